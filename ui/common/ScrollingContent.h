#pragma once

#include <QScreen>
#include <QScrollArea>
#include <QSize>
#include <QWidget>

namespace tavinor {

/// The content of a window that may be too large for the screen. Where the screen has the room it is all
/// there, and the window cannot be made smaller than it; where not, it scrolls, and follows the keyboard.
/// What the window has above it never scrolls.
class ScrollingContent : public QScrollArea {
    Q_OBJECT

  public:
    /// `above` is the window's bar over this area, if it has one: the content does not get its height.
    ScrollingContent(QWidget* content, QWidget* above, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] QSize withinScreen(const QSize& wanted) const;
    void reveal(QWidget* control);
    void followFocus(QWidget* old, QWidget* now);

    QWidget* above_ = nullptr;
};

/// The most that a window may take of its screen, so that its frame, title bar and menu bar stay on it.
inline QSize roomOnScreen(const QWidget& window) {
    constexpr QSize around(16, 56);
    return window.screen()->availableSize() - around;
}

}  // namespace tavinor
