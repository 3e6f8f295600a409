// How an assembly ends: what the window shows, what the files hold, which boxes come.

#include <QDir>
#include <QFile>
#include <QProgressDialog>
#include <QScrollBar>
#include <QTest>
#include <filesystem>
#include <memory>
#include <optional>

#include "tests/assembler/window/AssemblerUser.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/MemoryLimit.h"
#include "tests/support/OddFiles.h"
#include "tests/support/OrdinaryUser.h"
#include "tests/support/RealInput.h"
#include "ui/common/Paths.h"

using namespace tavinor;

namespace {

const char* const goodSource = "; ejemplo\r\n ORG 100H\r\nX: MVI A,5\r\n HLT\r\n";
const QStringList goodRecords{":030100003E057643", ":00000001FF"};
const QStringList goodListing{"0100             ORG 100H",
                              "0100 3E05       X: MVI A,5",
                              "0102 76          HLT",
                              QString(40, '-'),
                              "TABLA DE SIMBOLOS",
                              QString(40, '-'),
                              "X\t0100"};

QByteArray fileOf(const QStringList& texts) {
    return lines(texts, "\r\n").toUtf8();
}

/// A listing file ends in an empty line.
QByteArray listingFileOf(const QStringList& texts) {
    return fileOf(texts) + "\r\n";
}

bool atEnd(const QPlainTextEdit* pane) {
    return pane->verticalScrollBar()->maximum() > 0 &&
           pane->verticalScrollBar()->value() == pane->verticalScrollBar()->maximum();
}

}  // namespace

class OutcomeTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<AssemblerUser> user_;

    void compareFailure(const Shown& shown, const QStringList& listing, const QStringList& report) {
        QCOMPARE(shown.outcome, "Ensamblado incorrecto");
        QCOMPARE(shown.listing, lines(listing));
        QCOMPARE(shown.report, lines(report));
        QCOMPARE(shown.focus, "filehex");
        QCOMPARE(user_->read("prog.LST"), listingFileOf(listing));
    }

  private slots:
    void init() { user_ = std::make_unique<AssemblerUser>(); }
    void cleanup() { user_.reset(); }

    void showsAndWritesWhatItAssembled() {
        user_->write("prog.asm", goodSource);
        const Shown shown = user_->assemble("prog.asm");
        QCOMPARE(shown.outcome, "Ensamblado correcto");
        QCOMPARE(shown.listing, lines(goodListing));
        QCOMPARE(shown.report, lines(goodRecords));
        QCOMPARE(shown.focus, "cerrar");
        QCOMPARE(user_->read("prog.HEX"), fileOf(goodRecords));
        QCOMPARE(user_->read("prog.LST"), listingFileOf(goodListing));
        QCOMPARE(user_->dialogs().count(), 2);  // no box
    }

    void replacesTheFilesOfAnEarlierRun() {
        user_->write("prog.asm", goodSource);
        user_->write("prog.HEX", QByteArray(5000, 'h'));
        user_->write("prog.LST", QByteArray(5000, 'l'));
        user_->assemble("prog.asm");
        QCOMPARE(user_->read("prog.HEX"), fileOf(goodRecords));
        QCOMPARE(user_->read("prog.LST"), listingFileOf(goodListing));
    }

    void reportsTheErrorsOfTheFirstPass() {
        user_->write("prog.asm", "A: NOP\r\n\t nope\t; MAL \r\n MVI A,ZZ\r\n");
        const Shown shown = user_->assemble("prog.asm", {"Ensamblado incorrecto"});
        compareFailure(shown,
                       {"A: NOP", "\t nope\t; MAL ", "==> ERROR: Código de operación no valido", " MVI A,ZZ"},
                       {"==>\t nope\t; MAL ", "Línea: 2 - ERROR: Código de operación no valido"});
        QCOMPARE(user_->files(), QStringList({"prog.LST", "prog.asm"}));
    }

    void reportsTheErrorsOfTheLastPass() {
        user_->write("prog.asm", "A: MVI A,ZZ\r\n");
        const Shown shown = user_->assemble("prog.asm", {"Ensamblado incorrecto"});
        compareFailure(shown,
                       {"==> ERROR: Operando incorrecto", "0000 3EFF       A: MVI A,ZZ", QString(40, '-'),
                        "TABLA DE SIMBOLOS", QString(40, '-'), "A\t0000"},
                       {"==>A: MVI A,ZZ", "Línea: 1 - ERROR: Operando incorrecto"});
    }

    void canBeCancelledOnceItHasTakenLong() {
        user_->write("prog.asm", QByteArray(" NOP\r\n").repeated(2'000'000));
        user_->write("prog.HEX", "antes");
        user_->during = [this](QDialog& window) {
            user_->dialogs().expectWindow("progreso", [&window](QWidget* dialog) {
                QVERIFY(dialog->isModal());
                QCOMPARE(dialog->parentWidget(), &window);
                QCOMPARE(qobject_cast<QProgressDialog*>(dialog)->labelText(),
                         QString("Ensamblando el fichero..."));
                QVERIFY(!closeButton(window)->isEnabled());
                clickIn(dialog->findChild<QPushButton*>());
            });
        };
        const Shown shown = user_->assemble("prog.asm");
        QCOMPARE(shown.outcome, "Ensamblado cancelado");
        QCOMPARE(shown.focus, "cerrar");
        QCOMPARE(user_->dialogs().count(), 3);  // no box
        QCOMPARE(user_->read("prog.HEX"), "antes");
        const QByteArray listing = user_->read("prog.LST");
        QVERIFY(listing.endsWith("\r\n"));
        // A fast machine has come to what lies outside memory by then, and says so in lines of their own.
        QCOMPARE(listing.count("NOP"), listing.count('\n') - 1 - listing.count("==> ERROR"));
    }

    void leavesTheOldHexFileWhenItFails() {
        user_->write("prog.asm", " NOPE\r\n");
        user_->write("prog.HEX", "antes");
        user_->assemble("prog.asm", {"Ensamblado incorrecto"});
        QCOMPARE(user_->read("prog.HEX"), "antes");
    }

    void bringsTheFirstErrorIntoView() {
        user_->write("prog.asm",
                     QByteArray(" NOP\r\n").repeated(100) + QByteArray(" NOPE\r\n").repeated(300));
        user_->afterwards = [](QDialog& window) {
            const QPlainTextEdit* report = reportPane(window);
            QVERIFY(report->verticalScrollBar()->maximum() > 0);
            QCOMPARE(report->verticalScrollBar()->value(), 0);
            QCOMPARE(report->textCursor().position(), 0);
            QVERIFY(atEnd(listingPane(window)));
        };
        user_->assemble("prog.asm", {"Ensamblado incorrecto"});
    }

    void showsTheEndsOfBothPanesWhenItSucceeds() {
        user_->write("prog.asm", QByteArray(" NOP\r\n").repeated(2000));
        user_->afterwards = [](QDialog& window) {
            QVERIFY(atEnd(listingPane(window)));
            QVERIFY(atEnd(reportPane(window)));
            QCOMPARE(listingPane(window)->horizontalScrollBar()->value(), 0);
        };
        QCOMPARE(user_->assemble("prog.asm").outcome, "Ensamblado correcto");
    }

    void failsWhenTheHexFileCannotBeCreated() {
        user_->write("prog.asm", goodSource);
        QVERIFY(QDir().mkdir(user_->path("prog.HEX")));
        const Shown shown = user_->assemble("prog.asm", {"Error creando fichero", "Ensamblado incorrecto"});
        QCOMPARE(shown.outcome, "Ensamblado incorrecto");
        QCOMPARE(shown.report, QString());
        QCOMPARE(shown.focus, "filehex");
        QCOMPARE(user_->read("prog.LST"), listingFileOf(goodListing));
    }

    /// A program of nearly all memory makes 150 kB of records.
    void failsWhenTheHexFileDoesNotFitTheDisk() {
        user_->write("prog.asm", QByteArray(" DFW 1,2,3,4,5,6,7,8\r\n").repeated(4000));
        user_->write("prog.HEX", "old");
        std::optional<test::FileSizeLimit> fullDisk(4096);
        const Shown shown = user_->assemblePaths(user_->path("prog.asm"), user_->path("prog.HEX"), {},
                                                 {"Error creando fichero", "Ensamblado incorrecto"});
        fullDisk.reset();
        QCOMPARE(shown.outcome, "Ensamblado incorrecto");
        QVERIFY(shown.report.startsWith(":10000000"));
        QVERIFY(shown.listing.contains("TABLA DE SIMBOLOS"));
        QCOMPARE(user_->read("prog.HEX"), "old");
        QCOMPARE(user_->files(), QStringList({"prog.HEX", "prog.asm"}));
    }

    void succeedsWithoutAListingFile() {
        user_->write("prog.asm", goodSource);
        QVERIFY(QDir().mkdir(user_->path("prog.LST")));
        const Shown shown = user_->assemble("prog.asm", {"Error creando fichero"});
        QCOMPARE(shown.outcome, "Ensamblado correcto");
        QCOMPARE(shown.focus, "cerrar");
        QCOMPARE(user_->read("prog.HEX"), fileOf(goodRecords));
    }

    void whatIsNoFileIsNoSource() {
        user_->allowAllUsers();
        test::OddFiles().each([this](const std::string& what, const std::filesystem::path& path) {
            const Shown shown = user_->assemblePaths(fromPath(path), user_->path("prog.HEX"),
                                                     user_->path("prog.LST"), {"Ensamblado incorrecto"});
            QVERIFY2(user_->dialogs().allCame(), what.c_str());
            compareFailure(shown, {"==> ERROR: Error abriendo fichero"},
                           {"==> ERROR: Error abriendo fichero"});
            QVERIFY(!QFile::exists(user_->path("prog.HEX")));
            QVERIFY(QFile::remove(user_->path("prog.LST")));
        });
    }

    void whatIsNoFileIsNotWritten() {
        user_->write("prog.asm", goodSource);
        user_->allowAllUsers();
        test::OddFiles().each([this](const std::string& what, const std::filesystem::path& path) {
            const QString odd = fromPath(path);
            const QString source = user_->path("prog.asm");
            Shown shown =
                user_->assemblePaths(source, odd, {}, {"Error creando fichero", "Ensamblado incorrecto"});
            QVERIFY2(user_->dialogs().allCame(), what.c_str());
            QCOMPARE(shown.report, QString());
            shown = user_->assemblePaths(source, user_->path("prog.HEX"), odd, {"Error creando fichero"});
            QVERIFY2(user_->dialogs().allCame(), what.c_str());
            QCOMPARE(shown.outcome, "Ensamblado correcto");
            QVERIFY(QFile::remove(user_->path("prog.HEX")));
        });
    }

    void aBareNameFindsTheSource() {
        user_->write("prog.asm", goodSource);
        QCOMPARE(user_->assemble("prog").outcome, "Ensamblado correcto");
        QCOMPARE(user_->read("prog.HEX"), fileOf(goodRecords));
    }

    void saysAllThatFails() {
        user_->write("prog.asm", " NOPE\r\n");
        QVERIFY(QDir().mkdir(user_->path("prog.LST")));
        const Shown shown = user_->assemble("prog.asm", {"Ensamblado incorrecto", "Error creando fichero"});
        QCOMPARE(shown.focus, "filehex");
    }

    void writesNoListingFileWithoutAName() {
        user_->write("prog.asm", goodSource);
        user_->assemblePaths(user_->path("prog.asm"), user_->path("prog.HEX"), {});
        QCOMPARE(user_->files(), QStringList({"prog.HEX", "prog.asm"}));
    }

    void reportsAnEmptySource() {
        user_->write("prog.asm", "");
        const Shown shown = user_->assemble("prog.asm", {"Ensamblado incorrecto"});
        compareFailure(shown, {"==> ERROR: Fichero vacío"}, {"==> ERROR: Fichero vacío"});
    }

    void reportsASourceThatCannotBeRead_data() {
        QTest::addColumn<QString>("source");
        QTest::newRow("vanished") << "falta.asm";
        QTest::newRow("directory") << "";
        QTest::newRow("not allowed") << "secreto.asm";
    }
    void reportsASourceThatCannotBeRead() {
        QFETCH(const QString, source);
        user_->write("secreto.asm", goodSource);
        QVERIFY(QFile::setPermissions(user_->path("secreto.asm"), QFile::Permissions()));
        user_->allowAllUsers();
        const test::OrdinaryUser ordinary;
        QVERIFY(ordinary.is());
        const Shown shown = user_->assemblePaths(user_->path(source), user_->path("prog.HEX"),
                                                 user_->path("prog.LST"), {"Ensamblado incorrecto"});
        compareFailure(shown, {"==> ERROR: Error abriendo fichero"}, {"==> ERROR: Error abriendo fichero"});
        QVERIFY(!QFile::exists(user_->path("prog.HEX")));
    }

    /// However much memory it would take: it is not read.
    void refusesAnAbsurdlyLargeSource() {
        user_->write("prog.asm", goodSource);
        QFile source(user_->path("prog.asm"));
        QVERIFY(source.resize(qint64{1} << 40));
        const Shown shown = user_->assemble("prog.asm", {"Ensamblado incorrecto"});
        compareFailure(shown, {"==> ERROR: Fichero de más de 64 MiB"},
                       {"==> ERROR: Fichero de más de 64 MiB"});
    }

    void withoutMemoryNothingBegins() {
        user_->write("prog.asm", goodSource);
        user_->write("prog.HEX", "old");
        user_->write("prog.LST", "old");
        const test::MemoryLimit limit;
        const Shown shown = user_->assemble("prog.asm", {"Memoria insuficiente"});
        QCOMPARE(shown.outcome, "Ensamblado incorrecto");
        QCOMPARE(shown.listing, QString());
        QCOMPARE(user_->read("prog.HEX"), QByteArray("old"));
        QCOMPARE(user_->read("prog.LST"), QByteArray("old"));
    }

    void keepsTheEncodingOfTheSource_data() {
        QTest::addColumn<QByteArray>("source");
        const QString text = "AÑO: JMP AÑO ; así € sí\r\n";
        QByteArray windows1252("A\xD1O: JMP A\xD1O ; as\xED \x80 s\xED\r\n");
        QTest::newRow("UTF-8") << text.toUtf8();
        QTest::newRow("Windows-1252") << windows1252;
    }
    void keepsTheEncodingOfTheSource() {
        QFETCH(const QByteArray, source);
        user_->write("prog.asm", source);
        const Shown shown = user_->assemble("prog.asm");
        QCOMPARE(shown.outcome, "Ensamblado correcto");
        QVERIFY2(shown.listing.startsWith("0000 C30000     AÑO: JMP AÑO ; así € sí\n"),
                 qPrintable(shown.listing));
        QVERIFY2(shown.listing.endsWith("\nAÑO\t0000\n"), qPrintable(shown.listing));
        QVERIFY(user_->read("prog.LST").startsWith("0000 C30000     " + source));
    }

    void showsAnAccentInTheReport() {
        user_->write("prog.asm", " NOPE ; A\xD1O\r\n");
        const Shown shown = user_->assemble("prog.asm", {"Ensamblado incorrecto"});
        QVERIFY2(shown.report.startsWith("==> NOPE ; AÑO\n"), qPrintable(shown.report));
    }

    void takesNulsAsTheyAre() {
        user_->write("prog.asm", QByteArray(" NOP ; \0\0 x\r\n HLT\r\n", 19));
        const Shown shown = user_->assemble("prog.asm");
        QCOMPARE(shown.outcome, "Ensamblado correcto");
        QVERIFY(user_->read("prog.LST").startsWith(QByteArray("0000 00          NOP ; \0\0 x\r\n", 29)));
    }
};

QTEST_MAIN(OutcomeTest)
#include "OutcomeTest.moc"
