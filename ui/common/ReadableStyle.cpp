#include "ui/common/ReadableStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

#include "ui/common/Contrast.h"

namespace tavinor {

namespace {

constexpr double atTheDarkEndOfAGradient = 0.5;
constexpr int atTheLightEnd = 140;  // percent

/// Disabled texts, as pale as they may be. Buttons are darker at one edge, and on dark desktops lighter all
/// over.
void strengthenDisabled(QPalette& palette) {
    struct Pair {
        QPalette::ColorRole ink, paper;
    };
    for (const auto& [ink, paper] :
         {Pair{QPalette::WindowText, QPalette::Window}, Pair{QPalette::Text, QPalette::Base},
          Pair{QPalette::ButtonText, QPalette::Button}}) {
        QColor colour = palette.color(QPalette::Disabled, ink);
        const QColor own = palette.color(QPalette::Disabled, paper);
        for (const QColor& behind :
             {own, own.lighter(atTheLightEnd), palette.color(QPalette::Disabled, QPalette::Window)}) {
            colour = standingOut(colour, behind, palette.color(QPalette::Active, ink),
                                 textContrast + atTheDarkEndOfAGradient);
        }
        palette.setColor(QPalette::Disabled, ink, colour);
    }
}

/// The active group is what has the focus; the inactive one is the pale look of what has it not.
void separateSelections(QPalette& palette) {
    const QColor text = palette.color(QPalette::Active, QPalette::HighlightedText);
    const QColor away = text.lightness() < 128 ? Qt::white : Qt::black;
    const QColor fill =
        standingOut(palette.color(QPalette::Active, QPalette::Highlight), text, away, textContrast);
    palette.setColor(QPalette::Active, QPalette::Highlight, fill);
    constexpr double pale = 0.2;
    palette.setColor(QPalette::Inactive, QPalette::Highlight,
                     mixed(palette.color(QPalette::Active, QPalette::Base), fill, pale));
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText,
                     palette.color(QPalette::Active, QPalette::Text));
}

/// An outline between a box and the window around it.
QColor outline(const QPalette& palette, double ratio) {
    const QColor ink = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor pale = mixed(palette.color(QPalette::Window), ink, 0.3);
    return standingOut(standingOut(pale, palette.color(QPalette::Base), ink, ratio),
                       palette.color(QPalette::Window), ink, ratio);
}

QColor focusColour(const QPalette& palette, const QColor& background) {
    const QColor towards = background.lightness() < 128 ? Qt::white : Qt::black;
    return standingOut(palette.color(QPalette::Active, QPalette::Highlight), background, towards,
                       markContrast);
}

bool showsFocus(const QStyleOption& option) {
    return option.state.testFlag(QStyle::State_HasFocus) &&
           option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

/// Along the inner edge of `rect`.
void drawFrame(QPainter& painter, const QRect& rect, const QColor& colour, int width, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, radius > 0);
    painter.setPen(QPen(colour, width));
    painter.setBrush(Qt::NoBrush);
    const qreal half = width / 2.0;
    painter.drawRoundedRect(QRectF(rect).adjusted(half, half, -half, -half), radius, radius);
    painter.restore();
}

void drawFocusRect(QPainter& painter, const QStyleOption& option) {
    if (!option.state.testFlag(QStyle::State_KeyboardFocusChange)) return;
    const auto* focus = qstyleoption_cast<const QStyleOptionFocusRect*>(&option);
    const QColor window = option.palette.color(QPalette::Window);
    const QColor background =
        focus != nullptr && focus->backgroundColor.isValid() ? focus->backgroundColor : window;
    drawFrame(painter, option.rect, focusColour(option.palette, background), 1, 0);
}

/// A cell of a row that is selected as a whole.
bool isPartOfARow(const QStyleOption& option) {
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(&option);
    if (item == nullptr) return false;
    return item->viewItemPosition == QStyleOptionViewItem::Beginning ||
           item->viewItemPosition == QStyleOptionViewItem::Middle ||
           item->viewItemPosition == QStyleOptionViewItem::End;
}

/// What Qt's own style draws too faintly is drawn over it.
void strengthen(QStyle::PrimitiveElement element, const QStyleOption& option, QPainter& painter) {
    const bool focus = showsFocus(option);
    // A circle's line is mixed with what lies beside it.
    const double ratio = element == QStyle::PE_IndicatorRadioButton ? markContrast + 1 : markContrast;
    const QColor colour = focus ? focusColour(option.palette, option.palette.color(QPalette::Window))
                                : outline(option.palette, ratio);
    const int width = focus ? 2 : 1;
    switch (element) {
        case QStyle::PE_IndicatorCheckBox: drawFrame(painter, option.rect, colour, width, 0); break;
        case QStyle::PE_IndicatorRadioButton:
            drawFrame(painter, option.rect, colour, width, option.rect.width() / 2.0);
            break;
        case QStyle::PE_FrameLineEdit: drawFrame(painter, option.rect, colour, width, 2); break;
        case QStyle::PE_PanelButtonCommand:
            if (focus) drawFrame(painter, option.rect, colour, width, 2);
            break;
        case QStyle::PE_PanelItemViewItem:
            if (!option.state.testFlag(QStyle::State_Selected)) break;
            if (option.state.testFlag(QStyle::State_Active) || isPartOfARow(option)) break;
            drawFrame(painter, option.rect, focusColour(option.palette, option.palette.color(QPalette::Base)),
                      1, 0);
            break;
        default: break;
    }
}

/// Desktops put styles of their own around it.
bool isQtsOwn(const QStyle* style) {
    while (const auto* around = qobject_cast<const QProxyStyle*>(style)) style = around->baseStyle();
    return style->inherits("QFusionStyle");
}

}  // namespace

void ReadableStyle::polish(QPalette& palette) {
    QProxyStyle::polish(palette);
    strengthenDisabled(palette);
    separateSelections(palette);
}

/// Qt tells only whether the window is active, not which of its lists and tables has the keyboard.
void ReadableStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (element != CE_ItemViewItem || item == nullptr || widget == nullptr || widget->hasFocus()) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionViewItem unfocused(*item);
    unfocused.state.setFlag(State_Active, false);
    QProxyStyle::drawControl(element, &unfocused, painter, widget);
}

/// The styles of other systems draw outlines of their own, in other places.
void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    if (!isQtsOwn(baseStyle())) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    } else if (element == PE_FrameFocusRect) {
        drawFocusRect(*painter, *option);
    } else {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        strengthen(element, *option, *painter);
    }
}

}  // namespace tavinor
