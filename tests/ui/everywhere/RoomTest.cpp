// Every text has its room, whatever the desktop's font and scale: this runs on screens of several scales.

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

#include "tests/support/RealInput.h"
#include "tests/ui/everywhere/Clipping.h"
#include "tests/ui/everywhere/Scenes.h"
#include "tests/ui/main/Simulator.h"
#include "ui/common/Application.h"
#include "ui/common/ScrollingContent.h"

using namespace tavinor;

namespace {

void settle() {
    QTest::qWait(1);
    QCoreApplication::sendPostedEvents();
}

/// Makes the desktop's font larger while it lives.
class LargerFont {
  public:
    explicit LargerFont(double scale) : before_(QApplication::font()) {
        QFont font = before_;
        font.setPointSizeF(before_.pointSizeF() * scale);
        QApplication::setFont(font);
        settle();
    }
    ~LargerFont() {
        QApplication::setFont(before_);
        settle();
    }
    LargerFont(const LargerFont&) = delete;
    LargerFont& operator=(const LargerFont&) = delete;

  private:
    QFont before_;
};

QHash<const QWidget*, double> fontSizes(const QWidget& window) {
    QHash<const QWidget*, double> sizes;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &window) sizes[widget] = widget->font().pointSizeF();
    }
    return sizes;
}

constexpr double sizeDoesNotMatter = 0;
constexpr int titleBar = 30;
constexpr int ordinaryWidth = 1366;

/// Also as it opens, not only as small as it can be made. Twice the size is what fits: by the scale of the
/// screen or by the font, not both.
QString tooLarge(const QWidget& window, double font) {
    const QSize needed = window.minimumSizeHint().expandedTo(window.size());
    const QSize room = window.screen()->availableSize() - QSize(0, titleBar);
    if (room.width() < ordinaryWidth && font > 1) return {};
    if (needed.width() <= room.width() && needed.height() <= room.height()) return {};
    return QStringLiteral("larger than the screen: %1x%2").arg(needed.width()).arg(needed.height());
}

/// What must be seen of a control: all of it, or the current cell of one that is larger than `area`.
QRect placeOfTheKeyboard(const QWidget& control, const QWidget& area) {
    const bool whole = control.width() <= area.width() && control.height() <= area.height();
    const QRect place = whole ? control.rect() : control.inputMethodQuery(Qt::ImCursorRectangle).toRect();
    return {control.mapTo(&area, place.topLeft()), place.size()};
}

}  // namespace

class RoomTest : public QObject {
    Q_OBJECT

  private:
    QStringList complaints_;

    void inspect(const char* when, const QWidget& window, double font = 1) {
        QStringList found = clippedOrCovered(window);
        // A window that has grown does not shrink by itself.
        if (font > 0) found.append(tooLarge(window, font));
        found.removeAll(QString());
        for (const QString& complaint : found) complaints_.append(QString::fromUtf8(when) + ": " + complaint);
    }

    void lookAtCurrentScene(const Look& look) {
        int looks = 0;
        currentScene().show([&](QWidget& window) {
            ++looks;
            settle();
            look(window);
        });
        QCOMPARE(looks, 1);
        QVERIFY2(complaints_.isEmpty(), qPrintable(complaints_.join('\n')));
    }

    void addFonts() {
        QTest::addColumn<double>("font");
        for (const double font : {1.0, 1.5, 2.0}) QTest::addRow("%.1f", font) << font;
    }

  private slots:
    void initTestCase() { installSpanish(*qApp); }
    void init() { complaints_.clear(); }

    void theDesktopsFont_data() { addSceneRows(); }
    /// A menu does not stay open while the desktop's font is changed.
    void theDesktopsFont() {
        lookAtCurrentScene([this](QWidget& window) {
            inspect("normal", window);
            if (window.windowType() == Qt::Popup) return;
            const QHash<const QWidget*, double> before = fontSizes(window);
            {
                const LargerFont twice(2);
                const QHash<const QWidget*, double> after = fontSizes(window);
                for (const QWidget* widget : before.keys()) {
                    const double size = before[widget];
                    if (after.value(widget, 2 * size) > 1.9 * size) continue;
                    complaints_.append(widget->objectName() + " keeps the size of its letters");
                }
                inspect("grown", window, 2);
            }
            // A window keeps the size that its user gave it; what scrolls, scrolls.
            complaints_.removeIf(
                [](const QString& text) { return text.startsWith("grown") && text.endsWith("out of view"); });
            inspect("shrunk again", window, sizeDoesNotMatter);
        });
    }

    void aFontOfTwiceTheSize_data() { addSceneRows(); }
    void aFontOfTwiceTheSize() {
        const LargerFont twice(2);
        lookAtCurrentScene([this](QWidget& window) { inspect("twice", window, 2); });
    }

    /// The inspection itself: a caption that is cut, and a control over another one.
    void findsWhatIsWrong() {
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        auto* cut = new QPushButton("Ejecutar el programa", &window);
        cut->setFixedWidth(20);
        layout->addWidget(cut);
        auto* covered = new QPushButton("Parar", &window);
        layout->addWidget(covered);
        QVERIFY(showActive(&window));
        QCOMPARE(clippedOrCovered(window).size(), 1);
        covered->move(cut->pos());
        QCOMPARE(clippedOrCovered(window).size(), 2);
    }

    void theWholeMainWindowIsInViewWhereThereIsRoom() {
        const Simulator s;
        const QScreen* screen = s.window.screen();
        const QSize least(1024, 768);
        const bool room = screen->availableSize().expandedTo(least) == screen->availableSize();
        const auto* area = s.window.centralWidget()->findChild<ScrollingContent*>();
        QCOMPARE(area->horizontalScrollBar()->isVisible(), !room);
        QCOMPARE(area->verticalScrollBar()->isVisible(), !room);
    }

    void everyControlCanBeReachedWhereThereIsNone_data() {
        QTest::addColumn<double>("font");
        QTest::newRow("normal") << 1.0;
        QTest::newRow("twice") << 2.0;
    }
    void everyControlCanBeReachedWhereThereIsNone() {
        QFETCH(const double, font);
        const LargerFont larger(font);
        const Simulator s;
        const auto* area = s.window.centralWidget()->findChild<ScrollingContent*>();
        QVERIFY(s.window.screen()->availableGeometry().contains(s.window.frameGeometry()));
        s.button("Ejecutar")->setFocus();
        QSet<QWidget*> reached;
        for (QWidget* focus = s.window.focusWidget(); !reached.contains(focus);
             focus = s.window.focusWidget()) {
            reached.insert(focus);
            const QWidget& view = area->isAncestorOf(focus) ? *area->viewport() : *focus->window();
            const QRect place = placeOfTheKeyboard(*focus, view);
            QVERIFY2(view.rect().contains(place), qPrintable(focus->objectName()));
            pressKey(focus, Qt::Key_Tab);
        }
        QVERIFY(reached.size() > 40);
    }

    void theCommandBarNeverScrollsAway_data() { addFonts(); }
    void theCommandBarNeverScrollsAway() {
        QFETCH(const double, font);
        const LargerFont larger(font);
        const Simulator s;
        QVERIFY(s.window.screen()->availableGeometry().contains(s.window.frameGeometry()));
        const auto* area = s.window.centralWidget()->findChild<ScrollingContent*>();
        for (QScrollBar* bar : {area->horizontalScrollBar(), area->verticalScrollBar()}) {
            bar->setValue(bar->maximum());
        }
        for (const char* name :
             {"Ejecutar", "Eje_paso", "CargarHEX", "Ensamblar", "Editar", "about", "Reset"}) {
            const QAbstractButton* button = s.button(name);
            const QRect place(button->mapTo(&s.window, QPoint()), button->size());
            QVERIFY2(s.window.rect().contains(place) && button->width() >= button->sizeHint().width(), name);
            QVERIFY2(!button->visibleRegion().isEmpty() &&
                         button->visibleRegion().boundingRect() == button->rect(),
                     name);
        }
    }

    /// The ports give way first, and scroll.
    void memoryKeepsEightRows_data() { addFonts(); }
    void memoryKeepsEightRows() {
        QFETCH(const double, font);
        const LargerFont larger(font);
        const Simulator s;
        const auto rows = [&s](const char* name) {
            return s.grid(name)->viewport()->height() / s.grid(name)->rowHeight(0);
        };
        QVERIFY2(rows("grdmem") >= 8, qPrintable(QString::number(rows("grdmem"))));
        QVERIFY2(rows("grdport") == 16 || rows("grdmem") == 8, qPrintable(QString::number(rows("grdport"))));
        QVERIFY(rows("grdport") >= 4);
        QCOMPARE(s.grid("grdport")->verticalScrollBar()->maximum() > 0, rows("grdport") < 16);
        s.grid("grdport")->setFocus();
        pressKey(s.grid("grdport"), Qt::Key_End, Qt::ControlModifier);
        QVERIFY(s.grid("grdport")->viewport()->rect().contains(
            s.grid("grdport")->visualRect(s.grid("grdport")->model()->index(15, 15))));
    }

    /// Whatever the letters: what has no room in it scrolls.
    void theHaltDialogFitsTheScreen_data() { addFonts(); }
    void theHaltDialogFitsTheScreen() {
        QFETCH(const double, font);
        const LargerFont larger(font);
        Simulator s;
        s.load(0, QByteArray::fromHex("76"));
        s.dialogs.expectWindow("Halt", [](QWidget* dialog) {
            QVERIFY(dialog->screen()->availableGeometry().contains(dialog->frameGeometry()));
            QWidget* aceptar = dialog->findChild<QAbstractButton*>("aceptar");
            aceptar->setFocus();
            QCOMPARE(aceptar->visibleRegion().boundingRect(), aceptar->rect());
            clickIn(aceptar);
        });
        s.press("Eje_paso");
    }

    /// In a list that is higher than the window, the selected row is what must be seen.
    void theSelectedRowStaysInView() {
        const LargerFont twice(2);
        const Simulator s;
        const auto* area = s.window.centralWidget()->findChild<ScrollingContent*>();
        s.listing()->setFocus();
        for (int i = 0; i < s.listing()->count() + 5; ++i) {
            pressKey(s.listing(), Qt::Key_Down);
            const QRect row = s.listing()->visualItemRect(s.listing()->currentItem());
            const QPoint place = s.listing()->viewport()->mapTo(area->viewport(), row.center());
            QVERIFY2(area->viewport()->rect().contains(QPoint(0, place.y())), qPrintable(QString::number(i)));
        }
    }
};

QTEST_MAIN(RoomTest)
#include "RoomTest.moc"
