#pragma once

#include <QLineEdit>
#include <QString>
#include <cstdint>
#include <optional>

#include "machine/HexText.h"

namespace tavinor {

/// The shared check of a hexadecimal text for a box of `digits` (2 or 4) digits: leading blanks are dropped,
/// every other character must be a digit of either case, and there may be no more than `digits` of them. The
/// accepted text comes back in upper case, padded with zeros; a refused one as nothing.
std::optional<QString> rutvalidate(const QString& text, int digits);

/// A box for two or four hexadecimal digits.
///
/// What is typed means nothing until the box is left; then it is checked, written back in its normal form,
/// and `left` tells the window. A refused text shows "Valor incorrecto" once and stays, all selected, with
/// the focus; whatever would have taken the focus does not happen. Leaving is moving to another control of
/// the same window: another window, a menu or a context menu is not. `left` follows also when nothing was
/// typed: see behaviour.md, Common: hexadecimal boxes.
class HexBox : public QLineEdit {
    Q_OBJECT

  public:
    enum class Blank {
        padded,  ///< An empty text becomes zeros.
        kept,    ///< An empty or blank text is accepted as it stands.
    };

    HexBox(const QString& name, const QString& accessibleName, int digits, QWidget* parent,
           Blank blank = Blank::padded);

    [[nodiscard]] int digits() const { return digits_; }
    /// The value of the text, 0..65535 once the box has been left.
    [[nodiscard]] int value() const;

    /// The text in its normal form, as leaving the box would announce it; nothing when it would be refused.
    [[nodiscard]] std::optional<QString> normalText() const;
    /// The value of that; nothing, too, when it is blank.
    [[nodiscard]] std::optional<int> normalValue() const;

    /// Shows `text`; what was typed is gone. Nothing is announced as entered (no `validated`, no `left`), but
    /// `textChanged` tells of another text, and `editedChanged` that the user is no longer typing.
    void showText(const QString& text);
    /// Shows a value in the box's number of digits.
    void showValue(int value);

    /// Whether the text differs from what was shown last: the user is typing.
    [[nodiscard]] bool edited() const { return edited_; }

    /// Enters the box with `text` typed in place of what it holds.
    void startTyping(const QString& text);
    /// Leaves the box as moving the focus would: checks the text and announces it. False when it was refused.
    bool leave();
    /// Whether the user is in the box: it has the focus, or has lent it to a menu or another window.
    [[nodiscard]] bool entered() const { return state_ == State::inside || state_ == State::refusing; }
    /// Counts the box as entered again: it was left, but the focus has stayed.
    void reenter() { setState(State::inside); }

  signals:
    /// The text was accepted and is about to be announced by `left`.
    void validated();
    /// The user left the box with an accepted text.
    void left();
    void editedChanged(bool edited);

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    enum class State : std::uint8_t {
        outside,
        inside,    ///< Entered, and not left since.
        refusing,  ///< The same; its message is open, or about to open.
        leaving,   ///< What `left` causes may take the focus away for a while, and give it back.
    };

    void setState(State state);
    /// rutgotfocus: selects the whole text, so that typing replaces it.
    void rutgotfocus() { selectAll(); }
    void fitDigits();
    void refuse();
    void showRefusal();
    void noteEdit();
    void enterWritten();
    void watchPresses(bool on);
    [[nodiscard]] QWidget* focusTakerAt(const QPoint& position) const;

    int digits_;
    Blank blank_;
    QString shown_;
    QString noted_;  // the text before the last change
    bool edited_ = false;
    State state_ = State::outside;
    bool selectOnPress_ = false;  // the press that gave the focus keeps the whole text selected
};

/// `value` in `digits` hexadecimal digits, for a widget.
inline QString hexString(int value, int digits) {
    return QString::fromStdString(hexa(value, digits));
}

}  // namespace tavinor
