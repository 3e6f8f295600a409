#include "tests/support/DialogAnswerer.h"

#include <QDialog>
#include <QTest>
#include <QTimer>

#include "tests/support/RealInput.h"
#include "ui/common/FileDialogs.h"
#include "ui/common/MessageBoxes.h"

using namespace tavinor;

/// The helper must be able to fail: each wrong dialog is one complaint, and none of them hangs.
class DialogAnswererTest : public QObject {
    Q_OBJECT

  private:
    QStringList complaints_;
    DialogAnswerer::Report note_ = [this](const QString& complaint) { complaints_.append(complaint); };

  private slots:
    void init() { complaints_.clear(); }

    void answersWhatWasExpected() {
        {
            DialogAnswerer dialogs(note_);
            dialogs.expectMessage("uno\r\ndos");
            dialogs.expectQuestion("¿tres?", QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
            dialogs.expectQuestion("¿cuatro?", QMessageBox::Yes | QMessageBox::No, QMessageBox::NoButton);
            dialogs.expectFileDialog({"Abrir", {"Todo (*.*)"}, "*.asm"}, "/nowhere/a.asm");
            dialogs.expectFileDialog({"Salvar", {"Todo (*.*)"}, {}, true}, {});
            dialogs.expectWindow("otra", [](QWidget* window) { pressKey(window, Qt::Key_Escape); });

            showMessage(nullptr, "uno\rdos");
            QVERIFY(askYesNo(nullptr, "¿tres?"));
            QVERIFY(!askYesNo(nullptr, "¿cuatro?"));
            QCOMPARE(askFileToOpen(nullptr, {"Abrir", "Todo (*.*)|*.*", "*.asm"}), QString("/nowhere/a.asm"));
            QVERIFY(!askFileToSave(nullptr, {"Salvar", "Todo (*.*)|*.*", {}}));
            QDialog other;
            other.setObjectName("otra");
            other.exec();
            QVERIFY(dialogs.allCame());
            QCOMPARE(dialogs.count(), 6);
        }
        QCOMPARE(complaints_, QStringList());
    }

    void aWindowMayEndByItself() {
        {
            DialogAnswerer dialogs(note_);
            dialogs.expectWindow("otra", [](QWidget*) {});
            QDialog other;
            other.setObjectName("otra");
            QTimer::singleShot(0, &other, &QDialog::accept);
            QCOMPARE(other.exec(), static_cast<int>(QDialog::Accepted));
            QVERIFY(dialogs.allCame());
        }
        QCOMPARE(complaints_, QStringList());
    }

    void complainsOfAnotherText() {
        DialogAnswerer dialogs(note_);
        dialogs.expectMessage("uno");
        showMessage(nullptr, "dos");
        QCOMPARE(complaints_.size(), 1);
    }

    void complainsOfOtherButtons() {
        DialogAnswerer dialogs(note_);
        dialogs.expectMessage("uno");
        askYesNo(nullptr, "uno");
        QCOMPARE(complaints_.size(), 2);  // the buttons, and no OK to press
    }

    void complainsOfAnUnexpectedDialog() {
        DialogAnswerer dialogs(note_);
        showMessage(nullptr, "uno");
        QCOMPARE(complaints_.size(), 1);
    }

    void complainsOfAnotherKind() {
        DialogAnswerer dialogs(note_);
        dialogs.expectMessage("uno");
        QVERIFY(!askFileToOpen(nullptr, {"Abrir", "Todo (*.*)|*.*", {}}));
        QCOMPARE(complaints_.size(), 1);
    }

    void complainsOfAMissingDialog() {
        {
            DialogAnswerer dialogs(note_);
            dialogs.expectMessage("uno");
        }
        QCOMPARE(complaints_.size(), 1);
    }
};

QTEST_MAIN(DialogAnswererTest)
#include "DialogAnswererTest.moc"
