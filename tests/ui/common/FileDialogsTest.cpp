#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QListView>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include "tests/ui/common/FileDialogFixture.h"
#include "ui/common/FileDialogContents.h"

using namespace tavinor;

namespace {

/// A user's folder of the test's own.
class TemporaryHome {
  public:
    TemporaryHome() : home_(qgetenv("HOME")), settings_(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("HOME", folder_.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", folder_.path().toUtf8());
    }
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;
    ~TemporaryHome() {
        qputenv("HOME", home_);
        settings_.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", settings_);
    }

    [[nodiscard]] QString path(const QString& name) const {
        return name.isEmpty() ? folder_.path() : folder_.filePath(name);
    }
    /// The folder for documents, called so; without a name, the user's own folder is the one.
    void makeDocuments(const QString& name) const {
        QFile folders(path("user-dirs.dirs"));
        const QString line = "XDG_DOCUMENTS_DIR=\"$HOME/" + name + "\"\n";
        const bool made = (name.isEmpty() || QDir(folder_.path()).mkdir(name)) &&
                          folders.open(QIODevice::WriteOnly) && folders.write(line.toUtf8()) > 0;
        if (!made) qFatal("cannot make %s", qPrintable(name));
    }

  private:
    QTemporaryDir folder_;
    QByteArray home_;
    QByteArray settings_;
};

}  // namespace

class FileDialogsTest : public QObject {
    Q_OBJECT

  private slots:
    void aLongNameLeavesTheOtherDetailsInView() {
        FileDialogFixture f(QString(240, 'n') + ".asm");
        f.inDetails([](QTreeView& files) {
            const QHeaderView* header = files.header();
            const int last = header->logicalIndex(header->count() - 1);
            const int end = header->sectionPosition(last) + header->sectionSize(last);
            QVERIFY2(end <= files.viewport()->width(), qPrintable(QString::number(end)));
        });
    }

    /// Reading them may take for ever.
    void theKindOfAFileIsKnownWithoutReadingIt() {
        FileDialogFixture f("prog.asm");
        f.inDetails([](QTreeView& files) {
            constexpr int kindColumn = 2;
            const QModelIndex kind = files.model()->index(0, kindColumn, files.rootIndex());
            QTRY_COMPARE(kind.data().toString(), QString("Fichero ASM"));
        });
    }

    void aFolderThatWasOnlyLookedAtIsForgotten() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.ask(false, {}, [](QFileDialog& dialog) { typeName(dialog, "a.asm"); });
        const auto begin = [&](const QString& typed) {
            QString folder;
            f.dialogs.expectWindow("fileDialog", [&](QWidget* window) {
                auto& dialog = dynamic_cast<QFileDialog&>(*window);
                folder = dialog.directory().path();
                typeName(dialog, typed);
                pressKey(window, Qt::Key_Escape);
            });
            QWidget parent;
            askFileToOpen(&parent, {.title = "Abrir", .filter = "Todos (*.*)|*.*", .initialName = {}});
            return folder;
        };
        QCOMPARE(begin("sub"), f.path({}));
        QCOMPARE(begin("sub/*.asm"), f.path({}));
        QCOMPARE(begin(".."), f.path({}));
    }

    void theFolderOfAWholePathIsRemembered() {
        FileDialogFixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        QCOMPARE(f.ask(true, {}, [&](QFileDialog& dialog) { typeName(dialog, f.path("sub/new.asm")); }),
                 f.path("sub/new.asm"));
        QString folder;
        f.dialogs.expectWindow("fileDialog", [&](QWidget* window) {
            folder = dynamic_cast<QFileDialog&>(*window).directory().path();
            pressKey(window, Qt::Key_Escape);
        });
        QWidget parent;
        askFileToOpen(&parent, {.title = "Abrir", .filter = "Todos (*.*)|*.*", .initialName = {}});
        QCOMPARE(folder, f.path("sub"));
    }

    void theSideBarHasThePlacesThatAreThere() {
        const TemporaryHome home;
        const QTemporaryDir prefix;
        const QString program = prefix.filePath("bin");
        const QUrl computer("file:");
        const auto url = [](const QString& path) { return QUrl::fromLocalFile(path); };
        const QList<QUrl> bare = places(program);
        QVERIFY(QDir(home.path({})).mkdir("Documents"));
        QVERIFY(QDir(home.path({})).mkdir("Desktop"));
        QVERIFY(QDir(prefix.path()).mkpath("share/tavinor/ejemplos"));
        const QList<QUrl> all = places(program);
        QCOMPARE(bare, QList<QUrl>({computer, url(home.path({}))}));
        QCOMPARE(all,
                 QList<QUrl>({computer, url(home.path({})), url(home.path("Documents")),
                              url(home.path("Desktop")), url(prefix.filePath("share/tavinor/ejemplos"))}));
        FileDialogFixture f("a.asm");
        f.ask(false, {}, [](QFileDialog& dialog) {
            QCOMPARE(dialog.sidebarUrls(), places(QCoreApplication::applicationDirPath()));
        });
    }

    void aFolderIsOfferedOnce() {
        const TemporaryHome home;
        home.makeDocuments({});
        const QList<QUrl> urls = places(home.path("bin"));
        QCOMPARE(urls, QList<QUrl>({QUrl("file:"), QUrl::fromLocalFile(home.path({}))}));
    }

    /// "Docu..." is no name.
    void theSideBarShowsItsNamesWhole() {
        const TemporaryHome home;
        home.makeDocuments("Documentos de la clase");
        FileDialogFixture f("a.asm");
        f.ask(false, {}, [](QFileDialog& dialog) {
            const auto* bar = dialog.findChild<QListView*>("sidebar");
            QCOMPARE(bar->model()->rowCount(), 3);
            for (int row = 0; row < bar->model()->rowCount(); ++row) {
                const QModelIndex place = bar->model()->index(row, 0);
                const int needed = bar->sizeHintForIndex(place).width();
                QVERIFY2(bar->viewport()->width() >= needed, qPrintable(place.data().toString()));
            }
        });
    }

    void aLongNameInTheSideBarLeavesTheFilesInView() {
        const TemporaryHome home;
        home.makeDocuments(QString(200, 'n'));
        FileDialogFixture f("a.asm");
        f.ask(false, {}, [](QFileDialog& dialog) {
            QVERIFY(dialog.findChild<QTreeView*>("treeView")->width() > dialog.width() / 2);
        });
    }

    void aNameThatLooksLikeMarkupIsNone() {
        FileDialogFixture f("<b>x<b>&amp;.asm");
        Qt::TextFormat format = Qt::AutoText;
        QString text;
        f.inDetails([&](QTreeView& files) {
            files.setFocus();
            files.setCurrentIndex(files.model()->index(0, 0, files.rootIndex()));
            f.dialogs.expectWindow("", [&](QWidget* window) {
                const auto& box = dynamic_cast<QMessageBox&>(*window);
                format = box.textFormat();
                text = box.text();
                pressKey(window, Qt::Key_Escape);
            });
            pressKey(&files, Qt::Key_Delete);
        });
        QVERIFY2(text.contains("<b>x<b>&amp;.asm"), qPrintable(text));
        QCOMPARE(format, Qt::PlainText);
    }
};

QTEST_MAIN(FileDialogsTest)
#include "FileDialogsTest.moc"
