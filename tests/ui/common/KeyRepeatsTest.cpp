#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include "tests/support/RealInput.h"
#include "ui/common/KeyRepeats.h"

using namespace tavinor;

namespace {

/// A box and a default button, which counts its presses.
class Answered : public QDialog {
    Q_OBJECT

  public:
    Answered() : box(new QLineEdit(this)) {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(box);
        auto* button = new QPushButton("Aceptar", this);
        layout->addWidget(button);
        button->setDefault(true);
        connect(button, &QPushButton::clicked, this, [this] {
            ++presses;
            emit answered();
        });
    }

    QLineEdit* box;
    int presses = 0;

  signals:
    void answered();
};

}  // namespace

/// A held key does not go on being pressed in the window that comes up next.
class KeyRepeatsTest : public QObject {
    Q_OBJECT

  private:
    const KeyRepeats repeats_;

    static void holdEnter(const QWidget& window) { QTest::keyPress(window.windowHandle(), Qt::Key_Return); }

  private slots:
    void theNextWindowIsNotAnswered() {
        Answered first;
        Answered next;
        connect(&first, &Answered::answered, &next, [&] {
            first.hide();
            QVERIFY(showActive(&next));
        });
        QVERIFY(showActive(&first));
        holdEnter(first);
        QCOMPARE(first.presses, 1);
        repeatKey(&next, Qt::Key_Return, {}, 3);
        QCOMPARE(next.presses, 0);
        QTest::keyRelease(next.windowHandle(), Qt::Key_Return);
        QTest::qWait(5);  // a release and a press of one moment would be a repeat
        pressKey(&next, Qt::Key_Return);
        QCOMPARE(next.presses, 1);
    }

    void theSameWindowShownAgainIsTheNext() {
        QWidget owner;
        QVERIFY(showActive(&owner));
        Answered dialog;
        QVERIFY(showActive(&dialog));
        holdEnter(dialog);
        dialog.hide();
        QVERIFY(showActive(&owner));
        QVERIFY(showActive(&dialog));
        repeatKey(&dialog, Qt::Key_Return, {}, 3);
        QCOMPARE(dialog.presses, 1);
    }

    void backInTheFirstWindowTheyGoOn() {
        Answered first;
        QVERIFY(showActive(&first));
        holdEnter(first);
        {
            Answered next;
            QVERIFY(showActive(&next));
            repeatKey(&next, Qt::Key_Return, {}, 3);
            QCOMPARE(next.presses, 0);
        }
        QVERIFY(showActive(&first));
        repeatKey(&first, Qt::Key_Return, {}, 2);
        QCOMPARE(first.presses, 3);
    }

    void lettersAreNotTypedInTheNextWindow() {
        Answered first;
        Answered next;
        QVERIFY(showActive(&first));
        const auto letter = [](QWidget* window, bool repeat) {
            QTest::simulateEvent(window->windowHandle(), true, Qt::Key_A, {}, "a", repeat);
        };
        letter(&first, false);
        letter(&first, true);
        QVERIFY(showActive(&next));
        letter(&next, true);
        QCOMPARE(first.box->text(), "aa");
        QCOMPARE(next.box->text(), QString());
        letter(&next, false);
        letter(&next, true);
        QCOMPARE(next.box->text(), "aa");
    }
};

QTEST_MAIN(KeyRepeatsTest)
#include "KeyRepeatsTest.moc"
