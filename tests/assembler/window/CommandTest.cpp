// The command "Ensam": its file dialog, the names of the files it writes, and what it leaves of the main
// window.

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <memory>

#include "tests/assembler/window/AssemblerUser.h"
#include "tests/support/Differences.h"
#include "tests/support/RealInput.h"

using namespace tavinor;

class CommandTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<AssemblerUser> user_;

  private slots:
    void init() { user_ = std::make_unique<AssemblerUser>(); }
    void cleanup() { user_.reset(); }

    void doesNothingWhenCancelled() {
        user_->choose({});
        QCOMPARE(user_->dialogs().count(), 1);
        QCOMPARE(user_->files(), QStringList());
    }

    void saysThatTheSourceIsMissing_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << "falta.asm";
        QTest::newRow("markup") << "<b>falta<i> & más.asm";
    }
    void saysThatTheSourceIsMissing() {
        QFETCH(const QString, name);
        user_->choose(user_->path(name), {"El fichero: " + user_->path(name) + " no existe"});
        QCOMPARE(user_->dialogs().count(), 2);
        QCOMPARE(user_->files(), QStringList());
    }

    void derivesTheNamesOfItsFiles_data() {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("hex");
        QTest::addColumn<QString>("listing");
        QTest::newRow("small") << "prog.asm"
                               << "prog.HEX"
                               << "prog.LST";
        QTest::newRow("capital") << "PROG.ASM"
                                 << "PROG.HEX"
                                 << "PROG.LST";
        QTest::newRow("mixed") << "Prog.aSm"
                               << "Prog.HEX"
                               << "Prog.LST";
        QTest::newRow("other") << "prog.s"
                               << "prog.s.HEX"
                               << "prog.s.LST";
        QTest::newRow("none") << "prog"
                              << "prog.HEX"
                              << "prog.LST";
        QTest::newRow("no dot") << "miasm"
                                << "miHEX"
                                << "miLST";
        QTest::newRow("twice") << "a.asm.asm"
                               << "a.asm.HEX"
                               << "a.asm.LST";
        QTest::newRow("spaces, accents") << "año <b>2<i> 100%.asm"
                                         << "año <b>2<i> 100%.HEX"
                                         << "año <b>2<i> 100%.LST";
    }
    void derivesTheNamesOfItsFiles() {
        QFETCH(const QString, source);
        QFETCH(const QString, hex);
        QFETCH(const QString, listing);
        user_->write(source, " HLT\r\n");
        user_->afterwards = [&](QDialog& window) {
            const auto label = [&window](const char* name) { return window.findChild<QLabel*>(name); };
            QCOMPARE(label("file2")->text(), user_->path(hex));
            QCOMPARE(label("file3")->text(), user_->path(listing));
            QVERIFY(label("file1")->isVisible() && label("file2")->isHidden() && label("file3")->isHidden());
            QCOMPARE(label("file1")->textFormat(), Qt::PlainText);
        };
        const Shown shown = user_->assemble(source);
        QCOMPARE(shown.source, user_->path(source));
        QStringList expected{source, hex, listing};
        expected.sort();
        QCOMPARE(user_->files(), expected);
    }

    void opensByItsAccessKey() {
        user_->expectFileDialog({});
        pressKey(&user_->principal(), Qt::Key_N, Qt::AltModifier);
        QCOMPARE(user_->dialogs().count(), 1);
    }

    void refreshesTheViewsAndLeavesTheMachineAlone() {
        user_->write("carga.hex", ":030000003E057644\r\n:00000001FF\r\n");
        user_->dialogs().expectMessage("Carga correcta");
        user_->principal().loadHexFile(user_->path("carga.hex"));
        clickIn(user_->principal().findChild<QWidget*>("Eje_paso"));
        const auto before = std::make_unique<MachineState>(user_->principal().machine());
        QCOMPARE(before->A, std::uint8_t{5});

        auto* txtA = user_->principal().findChild<QLineEdit*>("txtA");
        {
            const QSignalBlocker unnoticed(txtA);  // else it would count as typed by an assistive tool
            txtA->setText("77");                   // as only a refresh mends it
        }
        user_->write("prog.asm", " ORG 0\r\n MVI A,9\r\n HLT\r\n");
        QCOMPARE(user_->assemble("prog.asm").outcome, "Ensamblado correcto");
        QCOMPARE(txtA->text(), "05");
        QCOMPARE(QString::fromStdString(test::differences(user_->principal().machine(), *before)), QString());
    }

    void assemblesAnewEachTime() {
        user_->write("prog.asm", " NOP\r\n");
        QCOMPARE(user_->assemble("prog.asm").report, lines({":0100000000FF", ":00000001FF"}));
        user_->write("prog.asm", " HLT\r\n");
        QCOMPARE(user_->assemble("prog.asm").report, lines({":010000007689", ":00000001FF"}));
        QCOMPARE(user_->read("prog.HEX"), ":010000007689\r\n:00000001FF\r\n");
    }

    void standsStillInARun() {
        user_->write("prog.asm", " NOP\r\n");
        auto* run = user_->principal().findChild<QPushButton*>("Ejecutar");
        QString outcome;
        QTimer::singleShot(0, [&] {
            const auto before = std::make_unique<MachineState>(user_->principal().machine());
            outcome = user_->assemble("prog.asm").outcome;
            QCOMPARE(run->text(), "&Parar");
            QCOMPARE(QString::fromStdString(test::differences(user_->principal().machine(), *before)),
                     QString());
            clickIn(run);
        });
        clickIn(run);  // returns when the run has been stopped
        QCOMPARE(run->text(), "E&jecutar");
        QCOMPARE(outcome, "Ensamblado correcto");
    }
};

QTEST_MAIN(CommandTest)
#include "CommandTest.moc"
