// Saving the trace: questions, errors, progress, and the file to the byte.

#include <QFile>
#include <QProgressDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/OddFiles.h"
#include "tests/support/RealInput.h"
#include "tests/ui/trace/TraceWindowTest.h"
#include "ui/common/Paths.h"

using namespace tavinor;

namespace {

const QString overwriteQuestion = QStringLiteral("El fichero %1 ya existe\n¿Desea sobreescribirlo?");
constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;

const ExpectedFileDialog saveDialog{
    "Salvar fichero .TXT", {"Fichero de texto (*.txt)", "Todos los ficheros (*.*)"}, "*.txt", true};

const QString headerLine =
    QStringLiteral("DIR \tDAT      \tINS         \tA \tB \tC \tD \tE \tF \tszapc\tH \tL \tM \tPC  \tSP  ");

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

}  // namespace

class TraceSavingTest : public QObject, private TraceWindowTest {
    Q_OBJECT

  private:
    QTemporaryDir folder_;

    [[nodiscard]] QByteArray expectedFile(std::size_t rows) const {
        std::string text = headerLine.toStdString() + "\r\n";
        for (std::size_t row = 0; row < rows; ++row) text += naive().line(row) + "\r\n";
        return QByteArray::fromStdString(text);
    }

  private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void savesNothingOfAnEmptyList() {
        QVERIFY(showActive(window_.get()));
        const DialogAnswerer dialogs;
        clickMenu("salvar");
        QCOMPARE(dialogs.count(), 0);
    }

    void cancelledItSavesNothing() {
        QVERIFY(showActive(window_.get()));
        record(1);
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, {});
        clickMenu("salvar");
        QCOMPARE(dialogs.count(), 1);
    }

    void savesToTheByte() {
        QVERIFY(showActive(window_.get()));
        record(1);
        const QString path = folder_.filePath("dos.txt");
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        pressKey(lista_, Qt::Key_S, Qt::AltModifier);
        QVERIFY(dialogs.allCame());
        QCOMPARE(contents(path),
                 QByteArray("DIR \tDAT      \tINS         \tA \tB \tC \tD \tE \tF \tszapc\tH \tL \tM \tPC  "
                            "\tSP  \r\n"
                            "\t\t\t00\t00\t00\t00\t00\t00\t00000\t00\t00\t01\t0000\t0000\r\n"
                            "0000\t01 FF FF \tLXI B,FFFF\t00\tFF\tFF\t00\t00\t00\t00000\t00\t00\t01\t0003"
                            "\t0000\r\n"));
    }

    void withoutMemoryTheOldFileStays() {
        QVERIFY(showActive(window_.get()));
        record(1);
        const QString path = folder_.filePath("viejo.txt");
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
        old.close();
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        dialogs.expectQuestion(overwriteQuestion.arg(path), yesNo, QMessageBox::Yes);
        dialogs.expectMessage("Memoria insuficiente");
        const test::MemoryLimit limit;
        clickMenu("salvar");
        QVERIFY(dialogs.allCame());
        QCOMPARE(contents(path), QByteArray("old"));
    }

    void savesEveryRow_data() {
        QTest::addColumn<int>("patience");
        QTest::newRow("at once") << 100'000;
        QTest::newRow("with its progress shown") << 0;
    }
    void savesEveryRow() {
        QFETCH(int, patience);
        window_->setPatience(std::chrono::milliseconds(patience));
        QVERIFY(showActive(window_.get()));
        for (int i = 0; i < 10; ++i) {
            record(14'000);
            traced_->edit([i](Registers& r) { r.D = static_cast<std::uint8_t>(i + 1); });
            traced_->type(0, "1x");
        }
        const QString path = folder_.filePath("todo.txt");
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        if (patience == 0) dialogs.expectWindow("progreso", [](QWidget*) {});
        if (QFile::exists(path)) QVERIFY(QFile::remove(path));
        clickMenu("salvar");
        QVERIFY(dialogs.allCame());
        QCOMPARE(contents(path), expectedFile(naive().rows().size()));
    }

    void cancelsALongSave() {
        window_->setPatience(std::chrono::milliseconds(0));
        traced_->recordOnlyCompact();
        QVERIFY(showActive(window_.get()));
        record(3'000'000);
        const QString path = folder_.filePath("parte.txt");
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        dialogs.expectWindow("progreso", [](QWidget* dialog) {
            QVERIFY(dialog->isModal());
            QCOMPARE(dialog->windowTitle(), QString("Tavinor"));
            QCOMPARE(qobject_cast<QProgressDialog*>(dialog)->labelText(), QString("Guardando el listado..."));
            auto* cancel = dialog->findChild<QPushButton*>();
            QCOMPARE(cancel->text(), QString("Cancelar"));
            clickIn(cancel);
        });
        clickMenu("salvar");
        QCOMPARE(dialogs.count(), 2);  // and no error
        const QByteArray written = contents(path);
        QVERIFY(written.startsWith(headerLine.toLatin1()));
        QVERIFY(written.size() < 100'000'000);
        QCOMPARE(lista_->rowCount(), std::uint64_t{3'000'001});
    }

    void asksBeforeOverwriting() {
        QVERIFY(showActive(window_.get()));
        record(1);
        const QString path = folder_.filePath("viejo <b>.txt");
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("viejo");
        old.close();
        for (const auto answer : {QMessageBox::No, QMessageBox::NoButton, QMessageBox::Yes}) {
            QCOMPARE(contents(path), QByteArray("viejo"));
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(saveDialog, path);
            dialogs.expectQuestion(overwriteQuestion.arg(path), yesNo, answer);
            clickMenu("salvar");
        }
        QCOMPARE(contents(path), expectedFile(2));
        record(1);
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        dialogs.expectWindow("messageBox", [](QWidget* box) { pressKey(box, Qt::Key_Return); });
        clickMenu("salvar");
        QCOMPARE(contents(path), expectedFile(2));
    }

    void enterDoesNotLoseTheList() {
        QVERIFY(showActive(window_.get()));
        record(1);
        {
            DialogAnswerer dialogs;
            dialogs.expectWindow("messageBox", [](QWidget* box) { pressKey(box, Qt::Key_Return); });
            QVERIFY(!window_->close());
        }
        QCOMPARE(lista_->rowCount(), std::uint64_t{2});
    }

    void reportsADiskThatFillsUpMeanwhile_data() {
        QTest::addColumn<int>("patience");
        QTest::newRow("at once") << 100'000;
        QTest::newRow("with its progress shown") << 0;
    }
    void reportsADiskThatFillsUpMeanwhile() {
        QFETCH(int, patience);
        window_->setPatience(std::chrono::milliseconds(patience));
        QVERIFY(showActive(window_.get()));
        record(100);
        const QString path = folder_.filePath("lleno.txt");
        QFile::remove(path);
        DialogAnswerer dialogs;
        dialogs.expectFileDialog(saveDialog, path);
        if (patience == 0) dialogs.expectWindow("progreso", [](QWidget*) {});
        dialogs.expectMessage("Error guardando fichero");
        const test::FileSizeLimit fullDisk(4096);
        clickMenu("salvar");
        QVERIFY(dialogs.allCame());
        QCOMPARE(contents(path), expectedFile(naive().rows().size()).left(4096));
        QCOMPARE(lista_->rowCount(), std::uint64_t{101});
    }

    void reportsWhatIsNoFile() {
        QVERIFY(showActive(window_.get()));
        record(1);
        test::OddFiles().each([this](const std::string& what, const std::filesystem::path& path) {
            if (what == "folder") return;  // the dialog enters it
            DialogAnswerer dialogs;
            dialogs.expectFileDialog(saveDialog, fromPath(path));
            if (QFile::exists(fromPath(path))) {
                dialogs.expectQuestion(overwriteQuestion.arg(fromPath(path)), yesNo, QMessageBox::Yes);
            }
            dialogs.expectMessage("Error guardando fichero");
            clickMenu("salvar");
            QVERIFY2(dialogs.allCame(), what.c_str());
        });
    }
};

QTEST_MAIN(TraceSavingTest)
#include "TraceSavingTest.moc"
