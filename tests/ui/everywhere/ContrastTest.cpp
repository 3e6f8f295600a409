// Everything that carries meaning can be told from what lies behind it, on a light and on a dark desktop:
// measured on the pixels of the windows as they are drawn.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHash>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QTest>
#include <QTextBlock>
#include <algorithm>
#include <string>

#include "tests/support/RealInput.h"
#include "tests/ui/everywhere/Scenes.h"
#include "tests/ui/main/Simulator.h"
#include "ui/common/Application.h"
#include "ui/common/Contrast.h"
#include "ui/common/ReadableStyle.h"
#include "ui/trace/TraceView.h"

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

/// A text in a window, by what it is, and its place there.
using Texts = QList<QPair<QString, QRect>>;

/// Finds the texts that are in view in a window.
class TextFinder {
  public:
    explicit TextFinder(const QWidget& window) : window_(window) {
        inspect(window);
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->window() == &window) inspect(*widget);
        }
    }
    [[nodiscard]] Texts texts() const { return texts_; }

  private:
    /// Only what is wholly in view: some of it may be scrolled away.
    void add(const QWidget& widget, const QString& text, const QRect& place) {
        const QRect inWindow(widget.mapTo(&window_, place.topLeft()), place.size());
        if (text.trimmed().isEmpty() || !widget.visibleRegion().contains(place)) return;
        texts_.append({widget.objectName() + " \"" + text.left(40) + '"', inWindow & window_.rect()});
    }

    void inspect(const QWidget& widget) {
        if (const auto* label = qobject_cast<const QLabel*>(&widget))
            add(*label, label->text(), label->rect());
        const auto* button = qobject_cast<const QAbstractButton*>(&widget);
        if (button != nullptr && !button->inherits("QToolButton"))
            add(*button, button->text(), captionOf(*button));
        if (const auto* box = qobject_cast<const QLineEdit*>(&widget)) {
            add(*box, box->text(), box->rect().adjusted(4, 4, -4, -4));
        }
        if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) addChoice(*combo);
        if (const auto* menu = qobject_cast<const QMenu*>(&widget)) addActions(*menu);
        if (const auto* bar = qobject_cast<const QMenuBar*>(&widget)) addActions(*bar);
        if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) {
            addSections(*header);
        } else if (const auto* view = qobject_cast<const QAbstractItemView*>(&widget)) {
            addItems(*view);
        }
        if (const auto* pane = qobject_cast<const QPlainTextEdit*>(&widget)) addLines(*pane);
        if (const auto* trace = qobject_cast<const TraceView*>(&widget)) addRows(*trace);
    }

    void addChoice(const QComboBox& combo) {
        QStyleOptionComboBox option;
        option.initFrom(&combo);
        const QRect place =
            combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo);
        add(combo, combo.currentText(), place.adjusted(0, 2, 0, -2));
    }

    template <typename Menu>
    void addActions(const Menu& menu) {
        for (QAction* action : menu.actions()) {
            if (action->isSeparator() || !action->isVisible()) continue;
            add(menu, action->text(), menu.actionGeometry(action).adjusted(2, 3, -2, -3));
        }
    }

    void addSections(const QHeaderView& header) {
        for (int i = 0; i < header.count(); ++i) {
            if (header.isSectionHidden(i)) continue;
            const int begin = header.sectionViewportPosition(i);
            const QRect place = header.orientation() == Qt::Horizontal
                                    ? QRect(begin, 0, header.sectionSize(i), header.height())
                                    : QRect(0, begin, header.width(), header.sectionSize(i));
            const QString text = header.model()->headerData(i, header.orientation()).toString();
            add(*header.viewport(), text, place.adjusted(3, 2, -3, -2));
        }
    }

    /// All columns of the rows below each other; a tree has one level here.
    void addItems(const QAbstractItemView& view) {
        const QModelIndex root = view.rootIndex();
        const int mostRows = std::min(view.model()->rowCount(root), 64);
        for (int row = 0; row < mostRows; ++row) {
            for (int column = 0; column < view.model()->columnCount(root); ++column) {
                const QModelIndex index = view.model()->index(row, column, root);
                add(*view.viewport(), index.data().toString(), view.visualRect(index).adjusted(2, 2, -2, -2));
            }
        }
    }

    void addLines(const QPlainTextEdit& pane) {
        QTextCursor cursor = pane.cursorForPosition(QPoint(1, 1));
        cursor.movePosition(QTextCursor::StartOfBlock);
        do {
            const QRect caret = pane.cursorRect(cursor);
            const int width = pane.fontMetrics().horizontalAdvance(cursor.block().text());
            const QRect place(caret.left(), caret.top(), width, caret.height());
            add(*pane.viewport(), cursor.block().text(), place & pane.viewport()->rect());
            if (caret.bottom() > pane.viewport()->height()) break;
        } while (cursor.movePosition(QTextCursor::NextBlock));
    }

    void addRows(const TraceView& trace) {
        const auto& viewport = *trace.viewport();
        for (int column = 0; column < static_cast<int>(traceColumns); ++column) {
            const QRect first = trace.cellRect({trace.firstRow(), column});
            const QString header = QStringLiteral("header of column %1").arg(column);
            add(viewport, header, QRect(first.left(), 0, first.width(), first.top()).adjusted(2, 2, -2, -3));
            for (int row = 0; row < trace.visibleRows(); ++row) {
                const TraceView::Cell cell{trace.firstRow() + static_cast<std::uint64_t>(row), column};
                const std::string& text = const_cast<TraceView&>(trace).cells(cell.row)[cell.column];
                add(viewport, QString::fromStdString(text), trace.cellRect(cell).adjusted(2, 1, -2, -2));
            }
        }
    }

    const QWidget& window_;
    Texts texts_;
};

}  // namespace

class ContrastTest : public QObject {
    Q_OBJECT

  private:
    static void readTexts() {
        currentScene().show([](QWidget& window) {
            QTest::qWait(1);
            const QImage picture = window.grab().toImage();
            QStringList faint;
            for (const auto& [what, place] : TextFinder(window).texts()) {
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

    /// Shows a scene; false when there is none of that name.
    static bool lookedAt(const char* name, const Look& look) {
        for (const Scene& scene : scenes()) {
            if (qstrcmp(scene.name, name) != 0) continue;
            scene.show(look);
            return true;
        }
        return false;
    }

    static QColor farthestFrom(const QImage& image, const QColor& paper) {
        QColor best = paper;
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, 0);
            if (contrast(colour, paper) > contrast(best, paper)) best = colour;
        }
        return best;
    }

    static void checkChoices(QWidget& dialog) {
        const QColor window = dialog.palette().color(QPalette::Window);
        for (const QRadioButton* choice : dialog.findChildren<QRadioButton*>()) {
            QStyleOptionButton option;
            option.initFrom(choice);
            const QRect mark =
                choice->style()->subElementRect(QStyle::SE_RadioButtonIndicator, &option, choice);
            const QImage picture =
                pictureOf(dialog).copy(QRect(choice->mapTo(&dialog, mark.topLeft()), mark.size()));
            // The circle crosses the row in the middle at both ends.
            const QImage left = picture.copy(0, picture.height() / 2, 3, 1);
            const QColor line = farthestFrom(left, window);
            QVERIFY2(
                contrast(line, window) >= markContrast,
                qPrintable(QStringLiteral("%1: %2").arg(choice->objectName()).arg(contrast(line, window))));
            if (!choice->isChecked()) continue;
            const QColor dot = picture.pixelColor(picture.rect().center());
            const QColor inside = picture.pixelColor(picture.width() / 2, 3);
            QVERIFY2(contrast(dot, inside) >= markContrast,
                     qPrintable(QStringLiteral("the dot: %1").arg(contrast(dot, inside))));
        }
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

    /// Their outlines tell boxes from the window, empty or not; so do the marks of buttons of which one is
    /// chosen.
    void outlinesOfTextBoxes_data() { addDesktops(); }
    void outlinesOfTextBoxes() {
        QFETCH(const bool, dark);
        useDesktop(dark);
        Simulator s;
        s.find<QWidget>("prg")->setFocus();
        const QImage picture = pictureOf(s.window);
        const QColor window = s.window.palette().color(QPalette::Window);
        for (const QLineEdit* box : s.window.findChildren<QLineEdit*>()) {
            if (!box->isVisible()) continue;
            const QRect place(box->mapTo(&s.window, QPoint()), box->size());
            const QColor inside = mostFrequent(picture.copy(place));
            const QColor line =
                mostFrequent(picture.copy(place.left(), place.top() + 4, 1, place.height() - 8));
            QVERIFY2(contrast(line, inside) >= markContrast && contrast(line, window) >= markContrast,
                     qPrintable(QStringLiteral("%1: %2, %3")
                                    .arg(box->objectName())
                                    .arg(contrast(line, inside))
                                    .arg(contrast(line, window))));
        }
    }

    void outlinesOfChoices_data() { addDesktops(); }
    void outlinesOfChoices() {
        QFETCH(const bool, dark);
        useDesktop(dark);
        Simulator s;
        s.load(0, QByteArray::fromHex("76"));
        s.dialogs.expectWindow("Halt", [](QWidget* dialog) {
            checkChoices(*dialog);
            clickIn(dialog->findChild<QAbstractButton*>("aceptar"));
        });
        s.press("Eje_paso");
    }

    /// A menu's command under the pointer, and one that cannot be chosen.
    void theChosenCommand_data() { addDesktops(); }
    void theChosenCommand() {
        QFETCH(const bool, dark);
        useDesktop(dark);
        QVERIFY(lookedAt("Edicion", [](QWidget& window) {
            auto& menu = dynamic_cast<QMenu&>(window);
            for (QAction* action : menu.actions()) {
                menu.setActiveAction(action);
                const QImage picture = pictureOf(menu);
                const QRect place = menu.actionGeometry(action).adjusted(3, 3, -3, -3);
                QVERIFY2(inkContrast(picture.copy(place)) >= textContrast, qPrintable(action->text()));
            }
        }));
    }

    void theSelectionInAText_data() { addDesktops(); }
    void theSelectionInAText() {
        QFETCH(const bool, dark);
        useDesktop(dark);
        QVERIFY(lookedAt("editor, selection", [](QWidget& window) {
            auto* text = window.findChild<QPlainTextEdit*>("texto");
            const QColor base = text->palette().color(QPalette::Base);
            QTextCursor cursor(text->document());
            cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
            text->setTextCursor(cursor);
            for (const bool focused : {true, false}) {
                focused ? text->setFocus() : text->clearFocus();
                const QRect caret = text->cursorRect();
                const QRect line(4, caret.top() + 1, caret.left() - 8, caret.height() - 2);
                const QImage picture = pictureOf(*text->viewport()).copy(line);
                QVERIFY(inkContrast(picture) >= textContrast);
                QVERIFY((contrast(mostFrequent(picture), base) >= markContrast) || !focused);
                QVERIFY(mostFrequent(picture) != base);
            }
        }));
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
