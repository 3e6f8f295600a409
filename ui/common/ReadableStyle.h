#pragma once

#include <QProxyStyle>

namespace tavinor {

/// The desktop's own style and colours, with enough contrast for what carries meaning: disabled captions,
/// selections, the outlines of boxes, the frame of the focus. A selection without the focus is pale.
class ReadableStyle : public QProxyStyle {
    Q_OBJECT

  public:
    using QProxyStyle::QProxyStyle;

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

}  // namespace tavinor
