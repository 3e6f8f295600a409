// Everything that carries meaning can be told from what lies behind it, on a light and on a dark desktop:
// measured on the pixels of the windows as they are drawn.

#include <QAbstractButton>
#include <QApplication>
#include <QGroupBox>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <QTest>

#include "tests/support/RealInput.h"
#include "tests/ui/everywhere/Scenes.h"
#include "tests/ui/main/Simulator.h"
#include "ui/common/Application.h"
#include "ui/common/Contrast.h"
#include "ui/common/ReadableStyle.h"

using namespace tavinor;

namespace {

/// A dark desktop's colours.
QPalette darkPalette() {
    QPalette palette(QColor(0x32, 0x32, 0x32), QColor(0x32, 0x32, 0x32));
    palette.setColor(QPalette::WindowText, QColor(0xF0, 0xF0, 0xF0));
    palette.setColor(QPalette::Text, QColor(0xF0, 0xF0, 0xF0));
    palette.setColor(QPalette::ButtonText, QColor(0xF0, 0xF0, 0xF0));
    palette.setColor(QPalette::Base, QColor(0x24, 0x24, 0x24));
    palette.setColor(QPalette::AlternateBase, QColor(0x2B, 0x2B, 0x2B));
    palette.setColor(QPalette::Highlight, QColor(0x30, 0x8C, 0xC6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(0x82, 0x82, 0x82));
    }
    return palette;
}

void useDesktop(bool dark) {
    QPalette palette = dark ? darkPalette() : QApplication::style()->standardPalette();
    QApplication::style()->polish(palette);
    QApplication::setPalette(palette);
}

QColor mostFrequent(const QImage& image) {
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) ++counts[image.pixel(x, y)];
    }
    QRgb best = image.pixel(0, 0);
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        if (it.value() > counts.value(best)) best = it.key();
    }
    return QColor(best);
}

/// Between what fills the picture and what differs most from it.
double inkContrast(const QImage& image) {
    const QColor paper = mostFrequent(image);
    double best = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            best = std::max(best, contrast(image.pixelColor(x, y), paper));
    }
    return best;
}

/// Where a button has its caption.
QRect captionOf(const QAbstractButton& button) {
    QStyleOptionButton option;
    option.initFrom(&button);
    if (qobject_cast<const QPushButton*>(&button) != nullptr) {
        const QSize text = button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
        QRect place(QPoint(), text);
        place.moveCenter(button.rect().center());
        return place & button.rect().adjusted(5, 5, -5, -5);
    }
    const bool check = button.inherits("QCheckBox");
    return button.style()->subElementRect(
        check ? QStyle::SE_CheckBoxContents : QStyle::SE_RadioButtonContents, &option, &button);
}

/// The place of each text in a window, by what it is.
QList<QPair<QString, QRect>> textsIn(const QWidget& window) {
    QList<QPair<QString, QRect>> texts;
    const auto add = [&](const QWidget* widget, const QString& text, const QRect& place) {
        const QRect inWindow(widget->mapTo(&window, place.topLeft()), place.size());
        // Only what is in view: some of it may be scrolled away.
        if (text.trimmed().isEmpty() || !widget->visibleRegion().contains(place)) return;
        texts.append({widget->objectName() + " \"" + text + '"', inWindow & window.rect()});
    };
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->window() != &window) continue;
        if (const auto* label = qobject_cast<const QLabel*>(widget)) add(label, label->text(), label->rect());
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        if (button != nullptr && !button->inherits("QToolButton"))
            add(button, button->text(), captionOf(*button));
        if (const auto* box = qobject_cast<const QLineEdit*>(widget)) {
            add(box, box->text(), box->rect().adjusted(4, 4, -4, -4));
        }
        if (const auto* list = qobject_cast<const QListWidget*>(widget)) {
            for (int row = 0; row < list->count(); ++row) {
                add(list->viewport(), list->item(row)->text(),
                    list->visualItemRect(list->item(row)).adjusted(0, 2, 0, -2));
            }
        }
    }
    return texts;
}

}  // namespace

class ContrastTest : public QObject {
    Q_OBJECT

  private:
    static void readTexts() {
        currentScene().show([](QWidget& window) {
            QTest::qWait(1);
            const QImage picture = window.grab().toImage();
            QStringList faint;
            for (const auto& [what, place] : textsIn(window)) {
                const double measured = inkContrast(picture.copy(place));
                if (measured < textContrast) faint.append(QStringLiteral("%1: %2").arg(what).arg(measured));
            }
            QVERIFY2(faint.isEmpty(), qPrintable(faint.join('\n')));
        });
    }

    static void addDesktops() {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }

    static QImage pictureOf(QWidget& widget) { return widget.grab().toImage(); }

    /// The picture of a listing row, and of its places in the gutter.
    static QImage rowPicture(const Simulator& s, int row) {
        return pictureOf(*s.listing()->viewport()).copy(s.listing()->visualItemRect(s.listing()->item(row)));
    }
    static QImage cellPicture(const Simulator& s, const char* grid, int column) {
        QTableView* view = s.grid(grid);
        const QRect cell = view->visualRect(view->model()->index(0, column));
        return pictureOf(*view->viewport()).copy(cell.adjusted(2, 1, -2, -1));
    }

  private slots:
    void initTestCase() {
        installSpanish(*qApp);
        QApplication::setStyle(new ReadableStyle(QStyleFactory::create("Fusion")));
    }

    void textsOnALightDesktop_data() { addSceneRows(); }
    void textsOnALightDesktop() {
        useDesktop(false);
        readTexts();
    }
    void textsOnADarkDesktop_data() { addSceneRows(); }
    void textsOnADarkDesktop() {
        useDesktop(true);
        readTexts();
    }

    /// Filled where the keyboard is, pale where it is not.
    void theFocusCanBeToldFromTheSelection_data() { addDesktops(); }
    void theFocusCanBeToldFromTheSelection() {
        QFETCH(const bool, dark);
        useDesktop(dark);
        Simulator s;
        const QColor base = s.listing()->palette().color(QPalette::Base);
        for (const char* focused : {"prg", "grdmem", "grdport"}) {
            s.find<QWidget>(focused)->setFocus();
            const QHash<QString, QImage> pictures{{"prg", rowPicture(s, 0)},
                                                  {"grdmem", cellPicture(s, "grdmem", 0)},
                                                  {"grdport", cellPicture(s, "grdport", 0)}};
            for (auto it = pictures.cbegin(); it != pictures.cend(); ++it) {
                const double fill = contrast(mostFrequent(it.value()), base);
                QVERIFY2((fill >= markContrast) == (it.key() == focused),
                         qPrintable(
                             QStringLiteral("%1 with the focus in %2: %3").arg(it.key(), focused).arg(fill)));
                QVERIFY(inkContrast(it.value()) >= textContrast);
            }
        }
        const QImage outlined = pictureOf(*s.listing()->viewport()).copy(0, 0, 200, 1);
        QVERIFY2(contrast(mostFrequent(outlined), base) >= markContrast, "the outline of the selected row");
    }

    void theMarksOfARow_data() { addDesktops(); }
    void theMarksOfARow() {
        QFETCH(const bool, dark);
        useDesktop(dark);
        Simulator s;
        s.clickRow(0);
        pressKey(s.listing(), Qt::Key_F9);
        for (const char* focused : {"prg", "grdmem"}) {
            s.find<QWidget>(focused)->setFocus();
            const QImage row = rowPicture(s, 0);
            const QColor paper = mostFrequent(row);
            // The gutter has two places as wide as six tenths of the row is high.
            const double size = row.height() * 0.6;
            for (const double middle : {2 + size / 3, 2 + size + 3 + size / 2}) {
                const QColor mark = row.pixelColor(static_cast<int>(middle), row.height() / 2);
                QVERIFY2(contrast(mark, paper) >= markContrast,
                         qPrintable(QStringLiteral("%1: %2").arg(middle).arg(contrast(mark, paper))));
            }
        }
    }

    /// Their outlines tell empty ones from the window.
    void emptyBoxes_data() { addDesktops(); }
    void emptyBoxes() {
        QFETCH(const bool, dark);
        useDesktop(dark);
        Simulator s;
        const QColor window = s.window.palette().color(QPalette::Window);
        for (const char* name : {"chkF7", "chkF0", "CHKEI", "chkSID", "ChkSOD"}) {
            QAbstractButton* box = s.button(name);
            QVERIFY(!box->isChecked());
            QStyleOptionButton option;
            option.initFrom(box);
            const QRect mark = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
            const QImage picture = pictureOf(*box).copy(mark);
            const QColor inside = picture.pixelColor(picture.rect().center());
            const QColor line = mostFrequent(picture.copy(0, 2, 1, picture.height() - 4));
            QVERIFY2(contrast(line, inside) >= markContrast && contrast(line, window) >= markContrast,
                     qPrintable(QStringLiteral("%1: %2").arg(name).arg(contrast(line, inside))));
        }
    }

    /// At every stop of Tab something changes that can be seen.
    void theFrameOfTheFocus_data() { addDesktops(); }
    void theFrameOfTheFocus() {
        QFETCH(const bool, dark);
        useDesktop(dark);
        Simulator s;
        s.button("Ejecutar")->setFocus();
        QImage before = pictureOf(s.window);
        for (int stop = 0; stop < 45; ++stop) {
            pressKey(&s.window, Qt::Key_Tab);
            const QWidget* focus = s.window.focusWidget();
            const QImage now = pictureOf(s.window);
            const QRect place(focus->mapTo(&s.window, QPoint()), focus->size());
            int seen = 0;
            for (int y = place.top(); y <= place.bottom(); ++y) {
                for (int x = place.left(); x <= place.right(); ++x) {
                    if (contrast(before.pixelColor(x, y), now.pixelColor(x, y)) >= markContrast) ++seen;
                }
            }
            QVERIFY2(seen >= 20, qPrintable(QStringLiteral("%1: %2").arg(focus->objectName()).arg(seen)));
            before = now;
        }
    }
};

QTEST_MAIN(ContrastTest)
#include "ContrastTest.moc"
