#include <QAccessible>
#include <QCheckBox>
#include <QGroupBox>
#include <QHash>
#include <QLabel>
#include <QRadioButton>
#include <QScopeGuard>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <algorithm>

#include "tests/support/RealInput.h"
#include "tests/ui/main/Simulator.h"
#include "tests/ui/main/ViewsCheck.h"

using namespace tavinor;

/// The dialog that a HLT opens, and what happens after each way out of it.
class HaltTest : public QObject {
    Q_OBJECT

  private:
    std::unique_ptr<Simulator> s_;

    [[nodiscard]] QString difference() const { return ViewsCheck(*s_).quickDifference(); }
    using WayOut = Halt::WayOut;
    [[nodiscard]] QRadioButton* option(WayOut wayOut) const {
        return s_->halt()->findChild<QRadioButton*>(QStringLiteral("opt%1").arg(static_cast<int>(wayOut)));
    }
    [[nodiscard]] QCheckBox* eje() const { return s_->halt()->findChild<QCheckBox*>("eje"); }
    [[nodiscard]] HexBox* vector() const { return s_->halt()->findChild<HexBox*>("txtVec"); }
    [[nodiscard]] QAbstractButton* aceptar() const {
        return s_->halt()->findChild<QAbstractButton*>("aceptar");
    }
    void typeVector(const QString& text) const {
        clickIn(vector());
        pressKey(vector(), Qt::Key_A, Qt::ControlModifier);
        typeText(vector(), text);
    }
    /// The next HLT opens the dialog, in which `action` is done; it has to end with "Aceptar".
    void expectHalt(const std::function<void()>& action) const {
        s_->dialogs.expectWindow("Halt", [this, action](QWidget* dialog) {
            action();
            if (!dialog->isVisible()) return;
            QTest::qFail("the dialog is still open", __FILE__, __LINE__);
            vector()->showText("00");
            clickIn(aceptar());
        });
    }
    /// What can be seen of a control, as a place on the screen.
    static QRect onTheScreen(const QWidget& widget) {
        const QRect seen = widget.visibleRegion().boundingRect();
        return {widget.mapToGlobal(seen.topLeft()), seen.size()};
    }
    /// The places of the controls that must be read while the processor is halted.
    [[nodiscard]] QHash<QString, QRect> readable() const {
        QHash<QString, QRect> places;
        for (const auto* group : s_->window.findChildren<QGroupBox*>()) {
            const bool read =
                QStringList({"Registros", "Interrupciones", "Puertos de E/S"}).contains(group->title());
            for (const QWidget* widget : read ? group->findChildren<QWidget*>() : QList<QWidget*>()) {
                const QRect place = onTheScreen(*widget);
                if (!place.isEmpty())
                    places.insert(QStringLiteral("%1 %2").arg(places.size()).arg(widget->objectName()),
                                  place);
            }
        }
        return places;
    }
    /// Those under `dialog`.
    [[nodiscard]] QStringList coveredBy(const QRect& dialog) const {
        const QHash<QString, QRect> places = readable();
        QStringList names = places.keys();
        names.removeIf([&](const QString& name) { return !dialog.intersects(places[name]); });
        return names;
    }
    /// Whether a window of that size has any place on the screen where nothing is covered that must be read.
    [[nodiscard]] bool hasRoom(const QSize& size) const {
        const QRect screen = s_->window.screen()->availableGeometry();
        const QList<QRect> places = readable().values();
        for (QRect place(screen.topLeft(), size); place.bottom() <= screen.bottom(); place.translate(0, 4)) {
            for (place.moveLeft(screen.left()); place.right() <= screen.right(); place.translate(4, 0)) {
                const auto covered = [&place](const QRect& rect) { return place.intersects(rect); };
                if (std::none_of(places.begin(), places.end(), covered)) return true;
            }
        }
        return false;
    }
    void expectHaltAndChoose(WayOut way) const {
        expectHalt([this, way] {
            clickIn(option(way));
            clickIn(aceptar());
        });
    }
    /// HLT at 0100 with a stack at 8000; `IE` with all lines open where `open`.
    void prepareHalt(bool open) const {
        s_->load(0x100, QByteArray::fromHex("76"));
        s_->enter("txtSP", "8000");
        s_->enter("txtPC", "0100");
        if (!open) return;
        for (const char* mask : {"CHK55", "CHK65", "CHK75", "CHKEI"}) s_->press(mask);
    }

  private slots:
    void init() { s_ = std::make_unique<Simulator>(); }
    void cleanup() { s_.reset(); }

    void texts() {
        prepareHalt(false);
        expectHalt([this] {
            QVERIFY(s_->halt()->isModal());
            QCOMPARE(s_->halt()->windowTitle(), "Tavinor");
            const auto label = [this](const char* name) { return s_->halt()->findChild<QLabel*>(name); };
            QCOMPARE(label("Label1")->text(), "Programa Parado por instrucción HLT");
            QVERIFY(label("Label1")->font().bold());
            QCOMPARE(label("Label1")->font().family(), "Arial");
            QCOMPARE(label("Label2")->text(), "Seleccione modo de salida");
            QVERIFY(!label("Label2")->font().bold());
            QCOMPARE(label("Label33")->text(), "Vector:");
            QStringList options;
            for (const WayOut way : Halt::waysOut) options.append(option(way)->text());
            QCOMPARE(options, QStringList({"RESET", "TRAP", "RST5.5", "RST6.5", "RST7.5", "INTR"}));
            QCOMPARE(eje()->text(), "Continuar ejecución");
            QCOMPARE(aceptar()->text(), "Aceptar");
            QCOMPARE(vector()->text(), "00");
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
        QVERIFY(!s_->halt()->isVisible());
        QCOMPARE(difference(), QString());
    }

    void aWayOut_data() {
        QTest::addColumn<WayOut>("way");
        QTest::addColumn<int>("programCounter");
        QTest::newRow("TRAP") << WayOut::trap << 0x24;
        QTest::newRow("RST5.5") << WayOut::rst55 << 0x2C;
        QTest::newRow("RST6.5") << WayOut::rst65 << 0x34;
        QTest::newRow("RST7.5") << WayOut::rst75 << 0x3C;
        QTest::newRow("INTR") << WayOut::intr << 0x38;
    }

    void aWayOut() {
        QFETCH(const WayOut, way);
        QFETCH(int, programCounter);
        prepareHalt(true);
        s_->enter("txtVec", "FF");
        expectHaltAndChoose(way);
        s_->press("Eje_paso");
        const MachineState& m = s_->machine();
        QCOMPARE(m.PC, programCounter);
        QCOMPARE(m.SP, 0x7FFE);
        QCOMPARE(int(m.mem[0x7FFE]) + 256 * m.mem[0x7FFF], 0x0101);  // the address after HLT
        QVERIFY(!m.intState.IE);
        QCOMPARE(ViewsCheck(*s_).difference(), QString());
    }

    void resetIsTheWayOutByDefault() {
        prepareHalt(true);
        expectHalt([this] {
            QVERIFY(option(WayOut::reset)->isChecked());
            pressKey(s_->halt(), Qt::Key_Return);
        });
        s_->press("Eje_paso");
        QVERIFY(static_cast<const Registers&>(s_->machine()) == Registers{});
        QVERIFY(!s_->machine().intState.IE && s_->machine().intState.M55);
        QCOMPARE(difference(), QString());
    }

    void resetIsSelectedEveryTime() {
        prepareHalt(false);
        for (int i = 0; i < 2; ++i) {
            expectHalt([this] {
                QVERIFY(option(WayOut::reset)->isChecked());
                QTRY_VERIFY(option(WayOut::reset)->hasFocus());
                clickIn(option(WayOut::trap));
                QVERIFY(option(WayOut::trap)->isChecked() && !option(WayOut::reset)->isChecked());
                clickIn(aceptar());
            });
            s_->enter("txtPC", "0100");
            s_->press("Eje_paso");
            QCOMPARE(s_->machine().PC, 0x24);
        }
    }

    void aMessageOverTheDialogKeepsTheSelection() {
        prepareHalt(true);
        expectHalt([this] {
            clickIn(option(WayOut::trap));
            typeVector("xx");
            clickIn(aceptar());  // refused: the dialog stays
            QVERIFY(s_->halt()->isVisible());
            QTRY_VERIFY(vector()->hasFocus());
            QCOMPARE(vector()->selectedText(), "xx");
            QVERIFY(option(WayOut::trap)->isChecked());
            typeVector("1");
            clickIn(aceptar());
        });
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 0x24);
        QCOMPARE(s_->text("txtVec"), "01");
    }

    void optionsFollowTheMasks() {
        prepareHalt(true);
        s_->press("CHK65");
        expectHalt([this] {
            QList<bool> enabled;
            for (const WayOut way : Halt::waysOut) enabled.append(option(way)->isEnabled());
            QCOMPARE(enabled, QList<bool>({true, true, true, false, true, true}));
            clickIn(option(WayOut::rst65));
            QVERIFY(option(WayOut::reset)->isChecked());
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
        s_->enter("txtPC", "0100");
        expectHalt([this] {
            for (const WayOut way : {WayOut::rst55, WayOut::rst65, WayOut::rst75, WayOut::intr}) {
                QVERIFY(!option(way)->isEnabled());
            }
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
    }

    void theProgramsOwnEnableOpensTheOptions() {
        s_->load(0, QByteArray::fromHex("3E08"
                                        "30"
                                        "FB"
                                        "76"));  // MVI A,8; SIM; EI; HLT
        for (int i = 0; i < 3; ++i) s_->press("Eje_paso");
        expectHalt([this] {
            for (const WayOut way : Halt::waysOut) QVERIFY(option(way)->isEnabled());
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
    }

    void escAndTheCloseBoxAreRefused() {
        prepareHalt(false);
        expectHalt([this] {
            pressKey(s_->halt(), Qt::Key_Escape);
            QVERIFY(s_->halt()->isVisible());
            QVERIFY(!s_->halt()->close());
            QVERIFY(s_->halt()->isVisible());
            QCOMPARE(s_->machine().PC, 0x101);
            clickIn(option(WayOut::trap));
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 0x24);
    }

    void theDefaultButtonsEnterLeavesTheVector() {
        prepareHalt(true);
        expectHalt([this] {
            clickIn(option(WayOut::intr));
            typeVector("zz");
            pressKey(s_->halt(), Qt::Key_Return);
            QVERIFY(s_->halt()->isVisible());
            QTRY_VERIFY(vector()->hasFocus());
            QCOMPARE(s_->text("txtVec"), "00");
            typeVector("cf");  // RST 1
            pressKey(s_->halt(), Qt::Key_Return);
        });
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->press("Eje_paso");
        QCOMPARE(s_->text("txtVec"), "CF");
        QCOMPARE(s_->machine().PC, 8);
    }

    void theVectorIsCopiedWhenItsBoxIsLeft() {
        prepareHalt(false);
        s_->enter("txtVec", "12");
        expectHalt([this] {
            QCOMPARE(vector()->text(), "00");
            typeVector("3e");
            QCOMPARE(s_->text("txtVec"), "12");
            clickIn(option(WayOut::trap));
            QCOMPARE(s_->text("txtVec"), "3E");
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
        QCOMPARE(s_->text("txtVec"), "3E");
    }

    void aToolsPressLeavesTheVector() {
        prepareHalt(false);
        expectHalt([this] {
            typeVector("zz");
            pressByAssistiveTool(aceptar());
            QVERIFY(s_->halt()->isVisible());
            QTRY_VERIFY(vector()->hasFocus());
            typeVector("0");
            pressByAssistiveTool(aceptar());
        });
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->press("Eje_paso");
        QVERIFY(!s_->halt()->isVisible());
    }

    /// No hand reaches the main window while the dialog is there.
    void aToolsPressBehindTheDialogDoesNothing() {
        prepareHalt(false);
        expectHalt([this] {
            const QString before = s_->text("txtPC");
            QVERIFY(pressByAssistiveTool(s_->button("Trap")));
            QCOMPARE(s_->text("txtPC"), before);
            QVERIFY(pressByAssistiveTool(s_->button("CHK55")));
            QVERIFY(s_->machine().intState.M55 && s_->checked("CHK55"));
            const int selected = s_->selectedAddress();
            QAccessibleInterface* row = QAccessible::queryAccessibleInterface(s_->listing())->child(3);
            for (const QString& action : row->actionInterface()->actionNames()) {
                row->actionInterface()->doAction(action);
            }
            QCOMPARE(s_->selectedAddress(), selected);
            QCOMPARE(s_->window.breakpoints()[static_cast<std::size_t>(s_->rowAddress(3))], 0);
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
        QVERIFY(!s_->halt()->isVisible());
        QVERIFY(pressByAssistiveTool(s_->button("Trap")));
        QCOMPARE(s_->text("txtPC"), "0024");
    }

    void aToolsChoiceLeavesTheVector() {
        prepareHalt(true);
        expectHalt([this] {
            typeVector("zz");
            pressByAssistiveTool(option(WayOut::intr));
            QVERIFY(option(WayOut::reset)->isChecked() && !option(WayOut::intr)->isChecked());
            QTRY_VERIFY(vector()->hasFocus());
            QCOMPARE(vector()->text(), "zz");
            typeVector("d7");
            pressByAssistiveTool(option(WayOut::intr));
            QVERIFY(option(WayOut::intr)->isChecked() && option(WayOut::intr)->hasFocus());
            QCOMPARE(s_->text("txtVec"), "D7");
            clickIn(aceptar());
        });
        s_->dialogs.expectMessage("Valor incorrecto");
        s_->press("Eje_paso");
        QCOMPARE(s_->text("txtPC"), "0010");
    }

    void firstOverTheListing_data() {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as the window opens") << QSize();
        QTest::newRow("the whole screen") << QSize(1366, 730);
        QTest::newRow("a small screen") << QSize(1008, 704);
    }

    void firstOverTheListing() {
        QFETCH(QSize, size);
        if (size.isValid()) s_->window.resize(size);
        prepareHalt(true);
        expectHalt([this] {
            QTest::qWait(50);  // for the window manager
            const QRect dialog = s_->halt()->frameGeometry();
            QVERIFY(s_->window.screen()->availableGeometry().contains(dialog));
            QCOMPARE(coveredBy(dialog), QStringList());
            const QRect listing = onTheScreen(*s_->listing());
            QVERIFY(dialog.intersects(listing) && dialog.bottom() <= listing.bottom() + 30);
            QVERIFY2(dialog.top() > listing.top() + listing.height() / 3, "the upper rows can be read");
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
    }

    void firstBesideWhatMustBeRead_data() {
        QTest::addColumn<double>("font");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("scrolledAway");
        for (const double font : {1.0, 1.5, 2.0}) {
            for (const QSize& size : {QSize(), QSize(1008, 704), QSize(600, 500)}) {
                for (const bool away : {false, true}) {
                    QTest::addRow("%.1f, %d wide%s", font, size.width(), away ? ", scrolled" : "")
                        << font << size << away;
                }
            }
        }
    }

    /// With large letters, or in a small window, the listing may be out of view.
    void firstBesideWhatMustBeRead() {
        QFETCH(const double, font);
        QFETCH(const QSize, size);
        QFETCH(const bool, scrolledAway);
        const QFont before = QApplication::font();
        const auto restore = qScopeGuard([&] { QApplication::setFont(before); });
        QFont larger = before;
        larger.setPointSizeF(before.pointSizeF() * font);
        QApplication::setFont(larger);
        s_ = std::make_unique<Simulator>();
        if (size.isValid()) s_->window.resize(size);
        prepareHalt(true);
        s_->button("Eje_paso")->setFocus();
        auto* area = s_->window.centralWidget()->findChild<QScrollArea*>();
        if (scrolledAway) {
            area->horizontalScrollBar()->setValue(area->horizontalScrollBar()->maximum());
            area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
        }
        expectHalt([this] {
            QTest::qWait(50);  // for the window manager
            const QRect dialog = s_->halt()->frameGeometry();
            QVERIFY(s_->window.screen()->availableGeometry().contains(dialog));
            const QStringList covered = coveredBy(dialog);
            // Where the frame comes to lie is up to the window manager: there must be room for it twice.
            const QSize frame = dialog.size() - s_->halt()->size();
            QVERIFY2(covered.isEmpty() || !hasRoom(dialog.size() + frame), qPrintable(covered.join(' ')));
            clickIn(aceptar());
        });
        pressKey(&s_->window, Qt::Key_P, Qt::AltModifier);
    }

    void afterwardsWhereItWasLeft() {
        prepareHalt(false);
        constexpr QPoint elsewhere(300, 100);
        expectHalt([this, elsewhere] {
            s_->halt()->move(elsewhere);
            QTest::qWait(50);
            clickIn(option(WayOut::trap));
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
        s_->enter("txtPC", "0100");
        expectHalt([this, elsewhere] {
            QTest::qWait(50);
            QVERIFY((s_->halt()->pos() - elsewhere).manhattanLength() < 5);
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
    }

    void inAStepThereIsNothingToContinue() {
        prepareHalt(false);
        expectHalt([this] {
            QVERIFY(!eje()->isEnabled() && !eje()->isChecked());
            clickIn(option(WayOut::trap));
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
        QVERIFY(!s_->running());
        QCOMPARE(s_->machine().PC, 0x24);
        QCOMPARE(difference(), QString());
    }

    void aRunGoesOnAfterTheDialog() {
        prepareHalt(false);
        s_->load(0x24, QByteArray::fromHex("0C"
                                           "76"));  // INR C; HLT
        expectHalt([this] {
            QVERIFY(s_->running());
            QVERIFY(eje()->isEnabled() && eje()->isChecked());
            QCOMPARE(s_->text("txtPC"), "0100");  // the views are those before the HLT
            clickIn(option(WayOut::trap));
            clickIn(aceptar());
        });
        expectHalt([this] {
            QCOMPARE(int(s_->machine().C), 1);
            QVERIFY(eje()->isChecked());
            clickIn(option(WayOut::trap));
            clickIn(eje());
            clickIn(aceptar());
        });
        s_->press("Ejecutar");
        QVERIFY(!s_->running());
        QCOMPARE(s_->machine().PC, 0x24);
        QCOMPARE(s_->machine().SP, 0x7FFC);
        QCOMPARE(difference(), QString());
    }

    void untickedStopsTheRun() {
        prepareHalt(false);
        expectHalt([this] {
            clickIn(eje());
            clickIn(aceptar());
        });
        s_->press("Ejecutar");
        QVERIFY(!s_->running());
        QVERIFY(s_->enabled("Eje_paso"));
        QVERIFY(!eje()->isEnabled() && !eje()->isChecked());
        QCOMPARE(s_->machine().PC, 0);
        QCOMPARE(difference(), QString());
        // The next run starts ticked again.
        s_->load(0, QByteArray::fromHex("C30000"));
        s_->runWith([this] { QVERIFY(eje()->isEnabled() && eje()->isChecked()); });
    }

    /// The test for a breakpoint after the step stops a run, it never starts one.
    void aBreakpointWhereAStoppedRunArrives() {
        prepareHalt(false);
        s_->enter("txtDIR", "0000");
        s_->clickRow(0);
        pressKey(&s_->window, Qt::Key_F9);
        s_->enter("txtPC", "0100");
        expectHalt([this] {
            clickIn(eje());
            clickIn(aceptar());
        });
        s_->press("Ejecutar");
        QVERIFY(!s_->running());
        QCOMPARE(s_->machine().PC, 0);
        QCOMPARE(difference(), QString());
    }

    void intrMayExecuteAnotherHalt() {
        prepareHalt(true);
        expectHalt([this] {
            clickIn(option(WayOut::intr));
            typeVector("76");
            clickIn(aceptar());  // returns when the second dialog has been left
            QVERIFY(!s_->halt()->isVisible());
        });
        expectHalt([this] {
            QVERIFY(s_->halt()->isVisible());
            QVERIFY(option(WayOut::reset)->isChecked());
            clickIn(option(WayOut::trap));
            clickIn(aceptar());
        });
        s_->press("Eje_paso");
        QVERIFY(!s_->halt()->isVisible());
        QCOMPARE(s_->machine().PC, 0x24);
        QCOMPARE(int(s_->machine().mem[0x101]), 0);
        QCOMPARE(ViewsCheck(*s_).difference(), QString());
        QVERIFY(s_->dialogs.allCame());
        s_->press("Eje_paso");  // the window lives
        QCOMPARE(s_->machine().PC, 0x25);
    }

    void anErrorInTheWayOutStopsTheRun() {
        // HLT at FFFC: INTR then executes a CALL in place at FFFD, whose return address fits; at FFFF the RST
        // of the HLT's own successor does not. So the failing one is a CALL that the run meets afterwards.
        s_->load(0xFFFC, QByteArray::fromHex("76"
                                             "CD0000"));
        s_->enter("txtSP", "8000");
        s_->enter("txtPC", "FFFC");
        for (const char* mask : {"CHK55", "CHKEI"}) s_->press(mask);
        expectHalt([this] {
            clickIn(option(WayOut::intr));
            typeVector("00");
            clickIn(aceptar());
        });
        s_->dialogs.expectMessage("Error 6: desbordamiento");
        s_->press("Ejecutar");
        QVERIFY(!s_->running());
        QCOMPARE(s_->machine().SP, 0x7FFF);
        QCOMPARE(s_->machine().PC, 0);
        QCOMPARE(difference(), QString());
    }

    /// A HLT in the last cell leaves PC past the top: accepting a request there cannot push it.
    void anErrorInsideTheDialogEndsTheRequestOnly() {
        s_->load(0xFFFF, QByteArray::fromHex("76"));
        s_->enter("txtSP", "8000");
        s_->enter("txtPC", "FFFF");
        expectHaltAndChoose(WayOut::trap);
        s_->dialogs.expectMessage("Error 6: desbordamiento");
        s_->press("Ejecutar");
        QVERIFY(!s_->running());
        QVERIFY(!s_->halt()->isVisible());
        QCOMPARE(s_->machine().SP, 0x7FFF);
        QCOMPARE(s_->machine().PC, 0);
        QVERIFY(s_->enabled("Eje_paso"));
        QCOMPARE(difference(), QString());
        s_->press("Eje_paso");
        QCOMPARE(s_->machine().PC, 1);
    }
};

QTEST_MAIN(HaltTest)
#include "HaltTest.moc"
