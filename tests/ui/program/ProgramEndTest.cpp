#include <QDir>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "tests/support/DialogAnswerer.h"
#include "tests/support/Dragging.h"
#include "tests/support/RealInput.h"
#include "ui/program/Program.h"

using namespace tavinor;

namespace {

constexpr auto saveButtons = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
constexpr char question[] = " a.asm ha cambiado\r\n¿Desea guardarlo?";

}  // namespace

/// How the program ends when the system asks for it.
class ProgramEndTest : public QObject {
    Q_OBJECT

  private:
    QTemporaryDir folder_;
    std::unique_ptr<Program> program_;
    std::unique_ptr<QSignalSpy> ended_;
    std::unique_ptr<DialogAnswerer> dialogs_;

    [[nodiscard]] QString path(const QString& name) const { return folder_.filePath(name); }
    [[nodiscard]] QString put(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) qFatal("cannot write");
        return path(name);
    }
    [[nodiscard]] QByteArray get(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not there)");
    }
    static QWidget* editor() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == "Editor" && window->isVisible()) return window;
        }
        return nullptr;
    }
    [[nodiscard]] bool edit() const {
        dropOn(&program_->principal(), DraggedFiles({put("a.asm", "HLT\r\n")}));
        if (editor() == nullptr || !waitActive(editor())) return false;
        typeText(editor(), "x");
        return true;
    }
    [[nodiscard]] QPushButton* runButton() const {
        return program_->principal().findChild<QPushButton*>("Ejecutar");
    }

  private slots:
    void init() {
        QVERIFY(folder_.isValid());
        program_ = std::make_unique<Program>(Version{1, 0, 0}, UpdateSource{});
        ended_ = std::make_unique<QSignalSpy>(program_.get(), &Program::ended);
        QVERIFY(showActive(&program_->principal()));
        dialogs_ = std::make_unique<DialogAnswerer>();
    }
    void cleanup() {
        dialogs_.reset();
        ended_.reset();
        program_.reset();
        QFile::remove(path("a.asm"));
        QFile::remove(path("a.asm.rescate"));
    }

    void withoutChangesItEndsAtOnce() {
        program_->requestEnd();
        QCOMPARE(ended_->count(), 1);
        QVERIFY(!program_->cabecera().isVisible());  // no farewell
    }

    void changesAreAskedFor() {
        QVERIFY(edit());
        dialogs_->expectQuestion(question, saveButtons, QMessageBox::Cancel);
        program_->requestEnd();
        QCOMPARE(ended_->count(), 0);
        QVERIFY(editor()->isVisible());
        dialogs_->expectQuestion(question, saveButtons, QMessageBox::Yes);
        program_->requestEnd();
        QCOMPARE(ended_->count(), 1);
        QVERIFY(!program_->cabecera().isVisible());
        QCOMPARE(get("a.asm"), QByteArray("xHLT\r\n\r\n"));
        QVERIFY(!QFile::exists(path("a.asm.rescate")));
    }

    void aSecondRequestTakesNoAnswer() {
        QVERIFY(edit());
        dialogs_->expectWindow("messageBox", [this](QWidget* box) {
            program_->requestEnd();
            QCOMPARE(ended_->count(), 1);
            pressKey(box, Qt::Key_Escape);
        });
        program_->requestEnd();
        QCOMPARE(ended_->count(), 1);
        QCOMPARE(get("a.asm"), QByteArray("HLT\r\n"));
        QCOMPARE(get("a.asm.rescate"), QByteArray("xHLT\r\n"));
    }

    void aModalWindowIsInTheWay() {
        QVERIFY(edit());
        dialogs_->expectWindow("fileDialog", [this](QWidget* dialog) {
            program_->requestEnd();
            QCOMPARE(ended_->count(), 1);
            pressKey(dialog, Qt::Key_Escape);
        });
        clickIn(program_->principal().findChild<QWidget*>("CargarHEX"));
        QVERIFY(dialogs_->allCame());
        QCOMPARE(get("a.asm.rescate"), QByteArray("xHLT\r\n"));
    }

    void anOpenMenuIsNot() {
        QVERIFY(edit());
        pressKey(editor(), Qt::Key_A, Qt::AltModifier);
        QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
        dialogs_->expectQuestion(question, saveButtons, QMessageBox::Cancel);
        program_->requestEnd();
        QVERIFY(QApplication::activePopupWidget() == nullptr);
        QCOMPARE(ended_->count(), 0);
    }

    void aRunStops_data() {
        QTest::addColumn<bool>("cancel");
        QTest::newRow("and the program ends") << false;
        QTest::newRow("and the program goes on") << true;
    }

    void aRunStops() {
        QFETCH(bool, cancel);
        if (cancel) QVERIFY(edit());
        QTimer::singleShot(10, this, [this, cancel] {
            QCOMPARE(runButton()->text(), QString("&Parar"));
            if (cancel) dialogs_->expectQuestion(question, saveButtons, QMessageBox::Cancel);
            program_->requestEnd();
            QCOMPARE(runButton()->text(), QString("E&jecutar"));
        });
        clickIn(runButton());  // NOPs without end; comes back when the run has stopped
        QCOMPARE(ended_->count(), cancel ? 0 : 1);
        QVERIFY(dialogs_->allCame());
    }

    /// What other systems send.
    void qtAsksForTheEnd() {
        QVERIFY(edit());
        dialogs_->expectQuestion(question, saveButtons, QMessageBox::No);
        QEvent quit(QEvent::Quit);
        QApplication::sendEvent(qApp, &quit);
        QCOMPARE(ended_->count(), 1);
        QVERIFY(!program_->cabecera().isVisible());
    }

    void aTextWithoutANameIsOnlyAskedFor() {
        dropOn(&program_->principal(), DraggedFiles({put("a.asm", "HLT\r\n")}));
        QVERIFY(waitActive(editor()));
        pressKey(editor(), Qt::Key_N, Qt::ControlModifier);
        typeText(editor(), "x");
        program_->rescue();  // nothing says where
        QCOMPARE(QDir(folder_.path()).entryList(QDir::Files), QStringList("a.asm"));
        dialogs_->expectQuestion(" [Sin nombre] ha cambiado\r\n¿Desea guardarlo?", saveButtons,
                                 QMessageBox::Cancel);
        program_->requestEnd();
        QCOMPARE(ended_->count(), 0);
    }
};

QTEST_MAIN(ProgramEndTest)
#include "ProgramEndTest.moc"
