#include <QDir>
#include <QFile>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>

#include "tests/support/OddFiles.h"
#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"
#include "ui/common/Paths.h"

using namespace tavinor;

/// The command that loads a HEX file: its dialog, what it says, and what has changed afterwards.
class LoadHexTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] QString difference() const { return ViewsCheck(*s_).difference(); }
    [[nodiscard]] int memory(int address) const {
        return s_->machine().mem[static_cast<std::size_t>(address)];
    }
    [[nodiscard]] bool breakpointAt(int address) const {
        return s_->window.breakpoints()[static_cast<std::size_t>(address)] != 0;
    }
    void setBreakpointAt(int address) const {
        s_->clickRow(s_->rowOf(address));
        pressKey(&s_->window, Qt::Key_F9);
    }
    /// An empty path cancels the dialog.
    void expectDialog(const QString& path) const {
        s_->dialogs.expectFileDialog(
            {.title = "Cargar fichero .HEX",
             .filters = {"Fichero hexadecimales (*.hex)", "Todos los ficheros (*.*)"},
             .presetName = {}},
            path);
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void loads() {
        s_->enter("txtHL", "0100");
        s_->enter("txtSP", "0101");
        s_->enter("txtA", "12");
        s_->enter("txtPC", "0100");
        setBreakpointAt(0x100);
        const Registers before = s_->machine();
        expectDialog(s_->writeFile("a.hex", hexRecords(0x100, QByteArray::fromHex("C3341200")) + endRecord));
        s_->dialogs.expectMessage("Carga correcta");
        s_->press("CargarHEX");
        QCOMPARE(memory(0x100), 0xC3);
        QCOMPARE(s_->text("txtM"), "C3");
        QCOMPARE(s_->stackLines().first(), "1234");
        QVERIFY(s_->rows().contains("0100 C3 34 12  JMP 1234"));
        QVERIFY(static_cast<const Registers&>(s_->machine()) == before);
        QVERIFY(!breakpointAt(0x100));
        QCOMPARE(difference(), QString());
    }

    void byItsAccessKey() {
        expectDialog(s_->writeFile("a.hex", endRecord));
        s_->dialogs.expectMessage("Carga correcta");
        pressKey(&s_->window, Qt::Key_C, Qt::AltModifier);
        QVERIFY(s_->dialogs.allCame());
    }

    void aBareNameFindsTheHexFile() {
        const QString path = s_->writeFile("prog.hex", hexRecords(0x100, QByteArray(1, '\x5A')) + endRecord);
        expectDialog(path.chopped(4));
        s_->dialogs.expectMessage("Carga correcta");
        s_->press("CargarHEX");
        QVERIFY(s_->dialogs.allCame());
        QCOMPARE(memory(0x100), 0x5A);
    }

    void aBareNameFindsTheAssemblersFileToo() {
        const QString path = s_->writeFile("solo.HEX", hexRecords(0x100, QByteArray(1, '\x5B')) + endRecord);
        expectDialog(path.chopped(4));
        s_->dialogs.expectMessage("Carga correcta");
        s_->press("CargarHEX");
        QCOMPARE(memory(0x100), 0x5B);
    }

    void aFileOfTheBareNameComesFirst() {
        s_->writeFile("prog.hex", hexRecords(0x100, QByteArray(1, '\x5A')) + endRecord);
        expectDialog(s_->writeFile("prog", hexRecords(0x100, QByteArray(1, '\x11')) + endRecord));
        s_->dialogs.expectMessage("Carga correcta");
        s_->press("CargarHEX");
        QVERIFY(s_->dialogs.allCame());
        QCOMPARE(memory(0x100), 0x11);
    }

    void aBareNameWithoutAnyFile() {
        expectDialog(QDir::tempPath() + "/no/such/prog");
        s_->dialogs.expectMessage("Error en lectura");
        s_->press("CargarHEX");
        QVERIFY(s_->dialogs.allCame());
    }

    void cancelIsSilent() {
        setBreakpointAt(3);
        const QStringList rows = s_->rows();
        expectDialog({});
        s_->press("CargarHEX");
        QVERIFY(s_->dialogs.allCame());
        QVERIFY(breakpointAt(3));
        QCOMPARE(s_->rows(), rows);
        QCOMPARE(s_->selectedAddress(), 3);
    }

    void failures_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("reason");  // null: "Error en lectura"
        QTest::addColumn<int>("stored");      // what is left at 0200
        const QByteArray data = hexRecords(0x200, QByteArray::fromHex("A5"));
        const QString noEnd = "No hay código de fin.";
        const QString badFormat = "Formato incorrecto.";
        QTest::newRow("no colon") << QByteArray("hello\r\n") << badFormat << 0;
        QTest::newRow("format error after data") << data + "0001\r\n" << badFormat << 0xA5;
        QTest::newRow("empty line") << data + "\r\n" + endRecord << badFormat << 0xA5;
        QTest::newRow("extended address") << data + ":020000040000FA\r\n" + endRecord << badFormat << 0xA5;
        QTest::newRow("empty file") << QByteArray() << noEnd << 0;
        QTest::newRow("no end record") << data << noEnd << 0xA5;
        QTest::newRow("end record with a wrong checksum") << data + ":00000001FE\r\n" << noEnd << 0xA5;
        QTest::newRow("wrong checksum and no end") << QByteArray(":01020000A500\r\n") << noEnd << 0xA5;
        QTest::newRow("past the top") << data + ":02FFFF001122CD\r\n" + endRecord << QString() << 0xA5;
        QTest::newRow("colon alone") << data + ":\r\n" << QString() << 0xA5;
    }

    void failures() {
        QFETCH(QByteArray, file);
        QFETCH(QString, reason);
        QFETCH(int, stored);
        s_->enter("txtHL", "0200");
        s_->enter("txtPC", "0200");
        setBreakpointAt(0x200);
        const QString path = s_->writeFile("bad.hex", file);
        expectDialog(path);
        if (reason.isNull()) {
            s_->dialogs.expectMessage("Error en lectura");
        } else {
            s_->dialogs.expectMessage("Error en fichero " + QDir::toNativeSeparators(path) + ".\r" + reason,
                                      Qt::AlignRight);
        }
        s_->press("CargarHEX");
        QVERIFY(s_->dialogs.allCame());
        QCOMPARE(memory(0x200), stored);
        QCOMPARE(s_->text("txtM"), hexDigits(stored, 2));
        QVERIFY(breakpointAt(0x200));
        QCOMPARE(difference(), QString());
        if (QByteArray(QTest::currentDataTag()) == "past the top") QCOMPARE(memory(0xFFFF), 0x11);
    }

    void noSuchFile() {
        expectDialog(QDir::tempPath() + "/no/such/file.hex");
        s_->dialogs.expectMessage("Error en lectura");
        s_->press("CargarHEX");
        QVERIFY(s_->dialogs.allCame());
    }

    void whatIsNoFile() {
        test::OddFiles().each([this](const std::string& what, const std::filesystem::path& path) {
            if (what == "folder") return;  // the dialog enters it
            expectDialog(fromPath(path));
            s_->dialogs.expectMessage("Error en lectura");
            s_->press("CargarHEX");
            QVERIFY2(s_->dialogs.allCame(), what.c_str());
        });
        s_->dialogs.expectMessage("Error en lectura");
        s_->window.loadHexFile(QDir::tempPath());
    }

    void aWrongChecksumBeforeTheEndIsForgiven() {
        expectDialog(s_->writeFile("a.hex", ":01030000A500\r\n" + endRecord + "rubbish"));
        s_->dialogs.expectMessage("Carga correcta");
        s_->press("CargarHEX");
        QCOMPARE(memory(0x300), 0xA5);
    }

    /// A path is shown letter by letter, whatever it looks like.
    void oddPaths() {
        for (const char* name : {"<b>a &amp; &x.hex", "año ñandú.hex", "a%1b.hex"}) {
            const QString path = s_->writeFile(name, "x");
            s_->dialogs.expectMessage("Error en fichero " + path + ".\rFormato incorrecto.", Qt::AlignRight);
            s_->window.loadHexFile(path);
        }
    }

    void leavesTheBoxFirst() {
        s_->type("txtA", "9");
        expectDialog({});
        s_->press("CargarHEX");
        QCOMPARE(int(s_->machine().A), 9);
        s_->type("txtA", "99q");
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->press("CargarHEX");
        QTRY_VERIFY(s_->box("txtA")->hasFocus());
        s_->box("txtA")->showText("09");
    }

    /// The file is one line of ten thousand million NULs behind a good record.
    void aHugeFileCanBeCancelled_data() {
        QTest::addColumn<bool>("running");
        QTest::newRow("at rest") << false;
        QTest::newRow("during a run") << true;
    }
    void aHugeFileCanBeCancelled() {
        QFETCH(const bool, running);
        s_->load(0, QByteArray::fromHex("C30000"));  // JMP 0000
        setBreakpointAt(3);
        const QString path = s_->writeFile("enorme.hex", hexRecords(0x1234, QByteArray(1, '\x5A')));
        QVERIFY(QFile::resize(path, 10'000'000'000));
        const auto cancelIt = [&] {
            expectDialog(path);
            s_->dialogs.expectWindow("progreso", [](QWidget* dialog) {
                QVERIFY(dialog->isModal());
                QCOMPARE(dialog->windowTitle(), QString("Tavinor"));
                QCOMPARE(qobject_cast<QProgressDialog*>(dialog)->labelText(),
                         QString("Cargando el fichero..."));
                auto* cancel = dialog->findChild<QPushButton*>();
                QCOMPARE(cancel->text(), QString("Cancelar"));
                clickIn(cancel);
            });
            const int before = s_->dialogs.count();
            s_->press("CargarHEX");
            QCOMPARE(s_->dialogs.count() - before, 2);  // and no box
            QCOMPARE(s_->running(), running);
        };
        if (running) {
            s_->runWith(cancelIt);
        } else {
            cancelIt();
        }
        QCOMPARE(memory(0x1234), 0x5A);
        QVERIFY(breakpointAt(3));
        QCOMPARE(difference(), QString());
    }

    void duringARun() {
        s_->load(0, QByteArray::fromHex("C30000"));  // JMP 0000
        const QByteArray other = QByteArray::fromHex(
            "3E77"
            "C30000");  // MVI A,77; JMP 0000
        const QString path = s_->writeFile("b.hex", hexRecords(0, other) + endRecord);
        s_->runWith([&] {
            QCOMPARE(int(s_->machine().A), 0);
            expectDialog(path);
            s_->dialogs.expectMessage("Carga correcta");
            s_->press("CargarHEX");
            QVERIFY(s_->running());
            QCOMPARE(int(s_->machine().A), 0);  // nothing runs while this handler does
        });
        QVERIFY(!s_->running());
        s_->press("Eje_paso");
        s_->press("Eje_paso");
        QCOMPARE(int(s_->machine().A), 0x77);
        QCOMPARE(difference(), QString());
    }
};

QTEST_MAIN(LoadHexTest)
#include "LoadHexTest.moc"
