#include <QAccessible>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>

#include "tests/support/RealInput.h"
#include "tests/ui/main/ListedPace.h"
#include "tests/ui/main/Simulator.h"

using namespace tavinor;

/// Clicks and keys while a run moves the selection and changes what can be pressed: each does what it was
/// meant for.
class RunInputTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        pressKey(&s_->window, key, modifiers);
    }
    /// INX B; JMP 0000: the program counter is at 0000 or 0001 at all times.
    void loadCounter() const { s_->load(0, QByteArray::fromHex("03C30000")); }
    void runWith(const QList<std::function<void()>>& actions) const { s_->runWith(actions); }
    /// Does it once, at the first look at the event queue in the run that is started next.
    void atTheFirstLook(const std::function<void()>& action) const {
        auto* timer = new QTimer(&s_->window);
        connect(timer, &QTimer::timeout, &s_->window, [this, timer, action] {
            if (!s_->running()) return;
            timer->stop();
            timer->deleteLater();
            action();
        });
        timer->start(0);
    }
    /// The addresses that have a breakpoint.
    [[nodiscard]] QList<int> breakpoints() const {
        QList<int> addresses;
        for (int address = 0; address < memorySize; ++address) {
            if (s_->window.breakpoints()[static_cast<std::size_t>(address)] != 0) addresses.append(address);
        }
        return addresses;
    }
    [[nodiscard]] bool listingHasFocus() const { return s_->window.focusWidget() == s_->listing(); }
    void checkSelectionFollows() const {
        QVERIFY(s_->running());
        QCOMPARE(s_->selectedAddress(), s_->machine().PC);
    }
    /// A stack at 8000, PC at 0100, and every line enabled.
    void openAllLines() const {
        s_->enter("txtSP", "8000");
        s_->enter("txtPC", "0100");
        for (const char* mask : {"CHK55", "CHK65", "CHK75", "CHKEI"}) s_->press(mask);
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    /// Nothing is brought up to date between what the user types and the dialog of a HLT.
    void whatIsBeingTypedIsStillThereInAHalt() {
        s_ = std::make_unique<Simulator>(std::make_unique<ListedPace>(QList<std::int64_t>{1}));
        s_->load(0, QByteArray::fromHex("0076"));  // NOP; HLT
        QString shown;
        s_->dialogs.expectWindow("Halt", [&](QWidget* dialog) {
            shown = s_->text("txtD");
            clickIn(dialog->findChild<QAbstractButton*>("eje"));  // and stops
            clickIn(dialog->findChild<QWidget*>("aceptar"));
        });
        atTheFirstLook([&] { s_->type("txtD", "7"); });
        s_->press("Ejecutar");
        QCOMPARE(shown, QString("7"));
    }

    void aDoubleClickIsForTheRowUnderThePointer() {
        loadCounter();
        QPoint place;
        runWith({[&] {
                     place = s_->placeOfRow(s_->rowOf(0x0006));
                     clickAt(s_->listing()->viewport(), place);
                     QCOMPARE(s_->selectedAddress(), 0x0006);
                 },
                 [&] {
                     checkSelectionFollows();
                     clickAgainAt(s_->listing()->viewport(), place);
                     QCOMPARE(breakpoints(), QList{0x0006});
                     QCOMPARE(s_->selectedAddress(), 0x0006);
                     QCOMPARE(s_->entryRow().first(), "0006");
                 }});
        QCOMPARE(breakpoints(), QList{0x0006});
    }

    void f9IsForTheRowThatWasClicked() {
        loadCounter();
        runWith({[&] { s_->clickRow(s_->rowOf(0x0007)); },
                 [&] {
                     checkSelectionFollows();
                     key(Qt::Key_F9);
                     QCOMPARE(breakpoints(), QList{0x0007});
                 },
                 [&] {
                     key(Qt::Key_F9);
                     QCOMPARE(breakpoints(), QList<int>());
                 }});
    }

    void f9IsForTheRowThatWasChosenByKeys() {
        loadCounter();
        s_->clickRow(s_->rowOf(0x0005));
        runWith({[&] {
                     s_->clickRow(s_->rowOf(0x0005));
                     key(Qt::Key_End);
                 },
                 [&] { key(Qt::Key_F9); }, [&] { typeText(&s_->window, "0009"); },
                 [&] {
                     checkSelectionFollows();
                     key(Qt::Key_F9);
                 }});
        QCOMPARE(breakpoints(), (QList{0x0009, 0x001E}));
    }

    /// Its address typed in the entry row, the row is chosen as well, and counts also where the list has left
    /// it behind.
    void f9IsForTheRowWhoseAddressWasTyped() {
        loadCounter();
        runWith({[&] {
                     s_->type("txtDIR", "0200");
                     while (!listingHasFocus()) key(Qt::Key_Backtab, Qt::ShiftModifier);
                 },
                 [&] {
                     checkSelectionFollows();
                     QCOMPARE(s_->rowOf(0x0200), -1);
                     key(Qt::Key_F9);
                 }});
        QCOMPARE(breakpoints(), QList{0x0200});
    }

    void f9WithoutAChoiceIsForTheSelectedRow() {
        s_->load(0, QByteArray::fromHex("C30000"));
        s_->listing()->setFocus();
        atTheFirstLook([this] { key(Qt::Key_F9); });
        key(Qt::Key_J, Qt::AltModifier);  // until it arrives at the breakpoint
        QCOMPARE(breakpoints(), QList{0});
    }

    void f9IsForTheSelectedRowAgainWhenTheRunHasEnded() {
        loadCounter();
        runWith({[&] { s_->clickRow(s_->rowOf(0x0007)); }, [] {}});
        s_->press("Reset");
        s_->listing()->setFocus();
        key(Qt::Key_F9);
        QCOMPARE(breakpoints(), QList{0});
    }

    void aToolsActionIsForItsRow() {
        loadCounter();
        const auto act = [&](int row, const QString& action) {
            QAccessible::queryAccessibleInterface(s_->listing())
                ->child(row)
                ->actionInterface()
                ->doAction(action);
        };
        runWith({[&] { act(s_->rowOf(0x0006), QAccessibleActionInterface::toggleAction()); },
                 [&] {
                     QCOMPARE(breakpoints(), QList{0x0006});
                     s_->clickRow(s_->rowOf(0x0008));
                     // The row that the run has selected is chosen as well, although nothing changes by that.
                     act(s_->rowOf(0x0006), QAccessibleActionInterface::setFocusAction());
                     act(s_->rowOf(0x0006), QAccessibleActionInterface::setFocusAction());
                     s_->listing()->setFocus();
                 },
                 [&] {
                     checkSelectionFollows();
                     key(Qt::Key_F9);
                     QCOMPARE(breakpoints(), QList<int>());
                 }});
    }

    /// The run lists other rows after the tool has read one.
    void aToolsActionIsForTheRowThatItHasRead() {
        s_->load(0x200, QByteArray::fromHex("C30003"));  // JMP 0300
        s_->load(0x300, QByteArray::fromHex("C30003"));
        s_->enter("txtPC", "0200");
        const int place = s_->rowOf(0x0206);
        QAccessibleInterface* row = QAccessible::queryAccessibleInterface(s_->listing())->child(place);
        QVERIFY(row->text(QAccessible::Name).startsWith("0206"));
        const auto toggle = [row] {
            row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        };
        runWith({[&] {
                     QVERIFY(s_->rowAddress(place) != 0x0206);
                     toggle();
                     QCOMPARE(breakpoints(), QList{0x0206});
                 },
                 [&] {
                     const int read = s_->rowAddress(place);
                     QVERIFY(!row->text(QAccessible::Name).isEmpty());
                     toggle();
                     QCOMPARE(breakpoints(), (QList{0x0206, read}));
                 }});
    }

    /// Alt+P stops the run, and would be the key of a step from then on.
    void theRepeatsOfAStopDoNotStep() {
        loadCounter();
        int atTheStop = -1;
        atTheFirstLook([&] {
            QTest::keyPress(s_->window.windowHandle(), Qt::Key_P, Qt::AltModifier);
            QVERIFY(!s_->running());
            atTheStop = s_->machine().BC * 2 + s_->machine().PC;
            repeatKey(&s_->window, Qt::Key_P, Qt::AltModifier, 3);
        });
        s_->press("Ejecutar");
        repeatKey(&s_->window, Qt::Key_P, Qt::AltModifier, 3);
        repeatKeyUnrecognised(s_->window.focusWidget(), Qt::Key_P, Qt::AltModifier);
        repeatKeyUnrecognised(s_->window.focusWidget(), Qt::Key_P, Qt::AltModifier);
        QCOMPARE(s_->machine().BC * 2 + s_->machine().PC, atTheStop);
        QTest::keyRelease(s_->window.windowHandle(), Qt::Key_P, Qt::AltModifier);
        key(Qt::Key_P, Qt::AltModifier);
        QVERIFY(s_->machine().BC * 2 + s_->machine().PC != atTheStop);
    }

    void aKeyPressedAnewWhileAltIsHeldIsNoRepeat() {
        loadCounter();
        int atTheStop = -1;
        const auto keyP = [this](bool press) {
            QTest::simulateEvent(s_->window.windowHandle(), press, Qt::Key_P, Qt::AltModifier, {}, false);
        };
        atTheFirstLook([&] {
            keyP(true);
            QVERIFY(!s_->running());
            atTheStop = s_->machine().BC * 2 + s_->machine().PC;
        });
        s_->press("Ejecutar");
        keyP(false);
        QTest::qWait(5);  // a release and a press of one moment would be a repeat
        keyP(true);
        keyP(false);
        QVERIFY(s_->machine().BC * 2 + s_->machine().PC != atTheStop);
    }

    void theRepeatsOfAStepGoOnStepping() {
        s_->load(0, QByteArray(10, '\0'));
        QTest::keyPress(s_->window.windowHandle(), Qt::Key_P, Qt::AltModifier);
        repeatKey(&s_->window, Qt::Key_P, Qt::AltModifier, 3);
        repeatKeyUnrecognised(s_->window.focusWidget(), Qt::Key_P, Qt::AltModifier);
        QTest::keyRelease(s_->window.windowHandle(), Qt::Key_P, Qt::AltModifier);
        QCOMPARE(s_->machine().PC, 5);
    }

    /// The other way round: the key of a step is held when a click starts a run.
    void theRepeatsOfAStepDoNotStop() {
        loadCounter();
        QTest::keyPress(s_->window.windowHandle(), Qt::Key_P, Qt::AltModifier);
        runWith({[&] {
            repeatKey(&s_->window, Qt::Key_P, Qt::AltModifier, 2);
            QVERIFY(s_->running());
        }});
        QTest::keyRelease(s_->window.windowHandle(), Qt::Key_P, Qt::AltModifier);
        QVERIFY(!s_->running());
    }

    void anAcceptedRequestHandsTheFocusToTheListing_data() {
        QTest::addColumn<QString>("button");
        for (const char* name : {"Rst55", "Rst65", "Rst75", "Intr"}) QTest::newRow(name) << QString(name);
    }

    void anAcceptedRequestHandsTheFocusToTheListing() {
        QFETCH(QString, button);
        openAllLines();
        s_->enter("txtVec", "FF");
        s_->button(button)->setFocus();
        key(Qt::Key_Space);
        QCOMPARE(s_->machine().SP, 0x7FFE);
        QVERIFY(!s_->enabled(button));
        QVERIFY(listingHasFocus());
        const QStringList entry = s_->entryRow();
        key(Qt::Key_Space);
        key(Qt::Key_Space);
        QCOMPARE(s_->machine().SP, 0x7FFE);
        QCOMPARE(s_->entryRow(), entry);
    }

    void aRequestByAToolHandsTheFocusToTheListing() {
        openAllLines();
        s_->button("Rst55")->setFocus();
        QVERIFY(pressByAssistiveTool(s_->button("Rst65")));
        QTRY_VERIFY(listingHasFocus());
        s_->press("CHKEI");
        s_->type("txtA", "12");
        QVERIFY(pressByAssistiveTool(s_->button("Rst65")));
        QTRY_COMPARE(int(s_->machine().A), 0x12);
        QTRY_VERIFY(listingHasFocus());
    }

    /// The program itself disables the button, in a step and in a run.
    void aButtonThatTheProgramDisablesHandsItsFocusToTheListing() {
        openAllLines();
        s_->load(0x100, QByteArray::fromHex("F3FBF3C30301"));  // DI; EI; DI; JMP 0103
        s_->button("Rst75")->setFocus();
        key(Qt::Key_P, Qt::AltModifier);
        QVERIFY(listingHasFocus());
        key(Qt::Key_P, Qt::AltModifier);
        s_->button("Rst75")->setFocus();
        atTheFirstLook([this] {
            QVERIFY(listingHasFocus());
            key(Qt::Key_P, Qt::AltModifier);
        });
        key(Qt::Key_J, Qt::AltModifier);
        QVERIFY(listingHasFocus());
        QCOMPARE(s_->machine().SP, 0x8000);
    }

    void aStartHandsTheFocusOfTheStepToTheListing() {
        loadCounter();
        s_->button("Eje_paso")->setFocus();
        atTheFirstLook([this] {
            QVERIFY(s_->running());
            QVERIFY(listingHasFocus());
            key(Qt::Key_P, Qt::AltModifier);
        });
        key(Qt::Key_J, Qt::AltModifier);
        QVERIFY(listingHasFocus());
    }

    void tabGoesOnAsEver() {
        s_->button("Ejecutar")->setFocus();
        key(Qt::Key_Tab);
        QVERIFY(s_->button("Eje_paso")->hasFocus());
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(s_->button("Ejecutar")->hasFocus());
    }
};

QTEST_MAIN(RunInputTest)
#include "RunInputTest.moc"
