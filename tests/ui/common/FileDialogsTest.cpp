#include <QApplication>
#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <functional>
#include <optional>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "ui/common/FileDialogs.h"
#include "ui/common/Places.h"

using namespace tavinor;

namespace {

QLineEdit* nameField(const QFileDialog& dialog) {
    return dialog.findChild<QLineEdit*>("fileNameEdit");
}

/// It shows the names that begin as what was typed.
void hideListOfNames() {
    if (QWidget* list = QApplication::activePopupWidget()) list->hide();
}

/// What stands in the name field, the preset, is selected and gives way.
void typeWithoutEnter(QFileDialog& dialog, const QString& name) {
    nameField(dialog)->setFocus();
    nameField(dialog)->selectAll();
    typeText(&dialog, name);
}

void typeName(QFileDialog& dialog, const QString& name) {
    typeWithoutEnter(dialog, name);
    hideListOfNames();
    pressKey(&dialog, Qt::Key_Return);
}

QStringList namesShown(const QFileDialog& dialog) {
    const auto* files = dialog.findChild<QTreeView*>("treeView");
    QStringList names;
    for (int row = 0; row < files->model()->rowCount(files->rootIndex()); ++row) {
        const QString name = files->model()->index(row, 0, files->rootIndex()).data().toString();
        if (!QFileInfo(dialog.directory().filePath(name)).isDir()) names.append(name);
    }
    names.sort();
    return names;
}

/// The file dialog over a folder with one file, or more.
class Fixture {
  public:
    explicit Fixture(const QString& name) { put(name); }

    void put(const QString& name) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write("HLT\n") < 0) {
            qFatal("cannot write %s", qPrintable(name));
        }
    }

    void setTime(const QString& name, const QDateTime& time) const {
        QFile file(path(name));
        const bool set =
            file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFile::FileModificationTime);
        if (!set) qFatal("cannot set the time of %s", qPrintable(name));
    }

    [[nodiscard]] QString path(const QString& name) const {
        return name.isEmpty() ? folder_.path() : folder_.filePath(name);
    }

    /// Opens the dialog and calls `act` with it; cancels it where it is still there. Returns what was chosen.
    std::optional<QString> ask(bool saving, const QString& preset,
                               const std::function<void(QFileDialog&)>& act) {
        dialogs.expectWindow("fileDialog", [&](QWidget* window) {
            auto& dialog = dynamic_cast<QFileDialog&>(*window);
            dialog.setDirectory(folder_.path());
            act(dialog);
            hideListOfNames();
            if (window->isVisible()) pressKey(window, Qt::Key_Escape);
        });
        const FileDialogTexts texts{.title = "Fichero",
                                    .filter = "Todos (*.*)|*.*|HEX (*.hex)|*.hex",
                                    .initialName = preset,
                                    .defaultSuffix = "asm"};
        return saving ? askFileToSave(&parent_, texts) : askFileToOpen(&parent_, texts);
    }

    /// Opens the dialog, calls `act` with its details, and cancels it.
    void inDetails(const std::function<void(QTreeView&)>& act) {
        dialogs.expectWindow("fileDialog", [&](QWidget* window) {
            auto& dialog = dynamic_cast<QFileDialog&>(*window);
            dialog.setDirectory(folder_.path());
            auto* files = window->findChild<QTreeView*>("treeView");
            const auto listed = [&] { return files->model()->rowCount(files->rootIndex()) == 1; };
            if (QTest::qWaitFor(listed)) act(*files);
            pressKey(window, Qt::Key_Escape);
        });
        askFileToOpen(&parent_, {.title = "Abrir", .filter = "Todos (*.*)|*.*", .initialName = {}});
        QVERIFY(dialogs.allCame());
    }

    DialogAnswerer dialogs;

  private:
    QTemporaryDir folder_;
    QWidget parent_;
};

}  // namespace

class FileDialogsTest : public QObject {
    Q_OBJECT

  private slots:
    void aLongNameLeavesTheOtherDetailsInView() {
        Fixture f(QString(240, 'n') + ".asm");
        f.inDetails([](QTreeView& files) {
            const QHeaderView* header = files.header();
            const int last = header->logicalIndex(header->count() - 1);
            const int end = header->sectionPosition(last) + header->sectionSize(last);
            QVERIFY2(end <= files.viewport()->width(), qPrintable(QString::number(end)));
        });
    }

    /// Reading them may take for ever.
    void theKindOfAFileIsKnownWithoutReadingIt() {
        Fixture f("prog.asm");
        f.inDetails([](QTreeView& files) {
            constexpr int kindColumn = 2;
            const QModelIndex kind = files.model()->index(0, kindColumn, files.rootIndex());
            QTRY_COMPARE(kind.data().toString(), QString("Fichero ASM"));
        });
    }

    /// Typed letter by letter, and Enter.
    void aPatternShowsWhatFits_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QStringList>("fitting");
        QTest::newRow("star") << "*.lst" << QStringList{"a.LST"};
        QTest::newRow("question mark") << "?.asm" << QStringList{"a.asm", "b.asm"};
        QTest::newRow("everything") << "*.*" << QStringList{"a.LST", "a.asm", "b.asm", "plain"};
        QTest::newRow("nothing") << "*.no" << QStringList{};
    }
    void aPatternShowsWhatFits() {
        QFETCH(const QString, pattern);
        QFETCH(const QStringList, fitting);
        Fixture f("a.asm");
        for (const char* name : {"b.asm", "a.LST", "plain"}) f.put(name);
        for (const bool saving : {false, true}) {
            const auto chosen = f.ask(saving, {}, [&](QFileDialog& dialog) {
                typeName(dialog, pattern);
                QVERIFY(dialog.isVisible());
                QCOMPARE(nameField(dialog)->text(), pattern);
                QTRY_COMPARE(namesShown(dialog), fitting);
            });
            QVERIFY(!chosen);
        }
        QCOMPARE(QDir(f.path({})).entryList(QDir::Files).size(), 4);
    }

    void thePresetPatternIsNoNameEither() {
        Fixture f("a.asm");
        f.put("b.txt");
        for (const bool saving : {false, true}) {
            const auto chosen = f.ask(saving, "*.asm", [&](QFileDialog& dialog) {
                pressKey(&dialog, Qt::Key_Return);
                QVERIFY(dialog.isVisible());
                QTRY_COMPARE(namesShown(dialog), QStringList{"a.asm"});
            });
            QVERIFY(!chosen);
        }
    }

    void aPatternInAnotherFolder() {
        Fixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.put("sub/c.asm");
        f.put("sub/d.txt");
        const auto chosen = f.ask(false, {}, [&](QFileDialog& dialog) {
            typeName(dialog, "sub/*.asm");
            QCOMPARE(dialog.directory().dirName(), QString("sub"));
            QTRY_COMPARE(namesShown(dialog), QStringList{"c.asm"});
            typeName(dialog, "c.asm");
        });
        QCOMPARE(chosen, f.path("sub/c.asm"));
    }

    /// Qt takes quotes for a list of names.
    void quotesBelongToTheName() {
        Fixture f("b");
        for (const QString name : {"x\"b\"c.asm", "\"b\"", "a\".asm", "\"", "\"b\" \"b\""}) {
            for (const bool saving : {false, true}) {
                const auto chosen = f.ask(saving, {}, [&](QFileDialog& dialog) { typeName(dialog, name); });
                QVERIFY2(chosen.has_value(), qPrintable(name));
                QVERIFY2(chosen->startsWith(f.path(name)), qPrintable(*chosen));
            }
        }
    }

    void quotesInANameThatIsClicked() {
        Fixture f("b");
        f.put("x\"b\"c.asm");
        const auto chosen = f.ask(false, {}, [&](QFileDialog& dialog) {
            auto* files = dialog.findChild<QTreeView*>("treeView");
            QTRY_COMPARE(namesShown(dialog).size(), 2);
            const QModelIndex index = files->model()->index(1, 0, files->rootIndex());
            QCOMPARE(index.data().toString(), QString("x\"b\"c.asm"));
            QTest::mouseClick(files->viewport(), Qt::LeftButton, {}, files->visualRect(index).center());
            QCOMPARE(nameField(dialog)->text(), QString("x\"b\"c.asm"));
            pressKey(&dialog, Qt::Key_Return);
        });
        QCOMPARE(chosen, f.path("x\"b\"c.asm"));
    }

    void aNameWithoutExtensionIsCompleted() {
        Fixture f("with.asm");
        f.put("both");
        f.put("both.asm");
        f.put("large.ASM");
        const QList<std::pair<QString, QString>> names{
            {"new", "new.asm"},     {"with", "with.asm"},   {"both", "both"}, {"large", "large.ASM"},
            {"new.txt", "new.txt"}, {"new.asm", "new.asm"}, {"dot.", "dot."}};
        for (const bool saving : {false, true}) {
            for (const auto& [typed, meant] : names) {
                const auto chosen = f.ask(saving, {}, [&](QFileDialog& dialog) { typeName(dialog, typed); });
                QCOMPARE(chosen, f.path(meant));
            }
        }
    }

    void theNewerOfTwoIsMeant() {
        Fixture f("old.asm");
        f.put("old.ASM");
        const QDateTime now = QDateTime::currentDateTime();
        for (const bool largeIsNewer : {true, false}) {
            f.setTime("old.asm", now.addSecs(-60));
            f.setTime("old.ASM", now.addSecs(largeIsNewer ? -30 : -90));
            const auto chosen = f.ask(false, {}, [&](QFileDialog& dialog) { typeName(dialog, "old"); });
            QCOMPARE(chosen, f.path(largeIsNewer ? "old.ASM" : "old.asm"));
        }
    }

    void aFolderIsEntered() {
        Fixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.put("sub/c.asm");
        const QString home = QDir::homePath();
        for (const bool saving : {false, true}) {
            const auto chosen = f.ask(saving, "*.asm", [&](QFileDialog& dialog) {
                typeName(dialog, "sub");
                QCOMPARE(dialog.directory().path(), f.path("sub"));
                QCOMPARE(nameField(dialog)->text(), QString());
                typeName(dialog, "..");
                QCOMPARE(dialog.directory().path(), f.path({}));
                typeName(dialog, "//");
                QCOMPARE(dialog.directory().path(), QString("/"));
                typeName(dialog, "~");
                QCOMPARE(dialog.directory().path(), home);
                typeName(dialog, f.path("sub") + '/');
                QCOMPARE(nameField(dialog)->text(), QString());
                pressKey(&dialog, Qt::Key_Return);  // nothing is no name
                typeName(dialog, "c.asm");
            });
            QCOMPARE(chosen, f.path("sub/c.asm"));
        }
    }

    /// The list of the names that begin with what was typed would take the next click.
    void theListOfNamesClosesWithEnter() {
        Fixture f("a.asm");
        QVERIFY(QDir(f.path({})).mkdir("sub"));
        f.put("sub/c.asm");
        f.ask(false, {}, [&](QFileDialog& dialog) {
            QTRY_COMPARE(namesShown(dialog), QStringList{"a.asm"});
            typeWithoutEnter(dialog, "sub");
            QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
            pressKey(QApplication::activePopupWidget(), Qt::Key_Return);
            QCOMPARE(dialog.directory().path(), f.path("sub"));
            QCOMPARE(nameField(dialog)->text(), QString());
            QTRY_COMPARE(namesShown(dialog), QStringList{"c.asm"});
            QVERIFY(QApplication::activePopupWidget() == nullptr);
        });
    }

    void anotherKindOfFilesLeavesTheName() {
        Fixture f("a.asm");
        const auto chosen = f.ask(true, {}, [&](QFileDialog& dialog) {
            auto* kinds = dialog.findChild<QComboBox*>("fileTypeCombo");
            typeWithoutEnter(dialog, "prog.asm");
            hideListOfNames();
            kinds->setFocus();
            pressKey(kinds, Qt::Key_Down);
            QCOMPARE(kinds->currentIndex(), 1);
            QCOMPARE(nameField(dialog)->text(), QString("prog.asm"));
            QTRY_COMPARE(namesShown(dialog), QStringList{});
            pressKey(kinds, Qt::Key_Up);
            QTRY_COMPARE(namesShown(dialog), QStringList{"a.asm"});
            QCOMPARE(nameField(dialog)->text(), QString("prog.asm"));
            pressKey(&dialog, Qt::Key_Return);
        });
        QCOMPARE(chosen, f.path("prog.asm"));
    }

    void aFolderThatWasOnlyLookedAtIsForgotten() {
        Fixture f("a.asm");
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
        Fixture f("a.asm");
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
        const QTemporaryDir home;
        const QTemporaryDir prefix;
        const QByteArray before = qgetenv("HOME");
        const QByteArray settings = qgetenv("XDG_CONFIG_HOME");
        qputenv("HOME", home.path().toUtf8());
        qunsetenv("XDG_CONFIG_HOME");
        const QString program = prefix.filePath("bin");
        const QUrl computer("file:");
        const auto url = [](const QString& path) { return QUrl::fromLocalFile(path); };
        const QList<QUrl> bare = places(program);
        QVERIFY(QDir(home.path()).mkdir("Documents"));
        QVERIFY(QDir(home.path()).mkdir("Desktop"));
        QVERIFY(QDir(prefix.path()).mkpath("share/tavinor/examples"));
        const QList<QUrl> all = places(program);
        qputenv("HOME", before);
        if (!settings.isNull()) qputenv("XDG_CONFIG_HOME", settings);
        QCOMPARE(bare, QList<QUrl>({computer, url(home.path())}));
        QCOMPARE(all, QList<QUrl>({computer, url(home.path()), url(home.filePath("Documents")),
                                   url(home.filePath("Desktop")),
                                   url(prefix.filePath("share/tavinor/examples"))}));
        Fixture f("a.asm");
        f.ask(false, {}, [](QFileDialog& dialog) {
            QCOMPARE(dialog.sidebarUrls(), places(QCoreApplication::applicationDirPath()));
        });
    }

    void aNameThatLooksLikeMarkupIsNone() {
        Fixture f("<b>x<b>&amp;.asm");
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
