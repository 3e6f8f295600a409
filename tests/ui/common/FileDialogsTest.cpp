#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <functional>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/RealInput.h"
#include "ui/common/FileDialogs.h"

using namespace tavinor;

namespace {

/// The file dialog over a folder with one file.
class Fixture {
  public:
    explicit Fixture(const QString& name) {
        QFile file(folder_.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write("HLT\n") < 0) {
            qFatal("cannot write %s", qPrintable(name));
        }
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

    /// The toolkit makes an empty path of it.
    void slashesAloneAreNoFile() {
        QWidget parent;
        DialogAnswerer dialogs;
        dialogs.expectFileDialog({"Abrir", {"Todos (*.*)"}, ""}, "//");
        const auto path =
            askFileToOpen(&parent, {.title = "Abrir", .filter = "Todos (*.*)|*.*", .initialName = {}});
        QVERIFY(!path.has_value());
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
