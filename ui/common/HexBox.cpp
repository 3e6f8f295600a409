#include "ui/common/HexBox.h"

#include <QFocusEvent>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScopeGuard>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QWindow>

#include "machine/HexText.h"
#include "ui/common/FocusGate.h"
#include "ui/common/Fonts.h"
#include "ui/common/MessageBoxes.h"
#include "ui/common/Naming.h"

namespace tavinor {

namespace {

/// Focus changes that do not leave the box: another window, a context menu, the menu bar.
bool staysInBox(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

}  // namespace

std::optional<QString> rutvalidate(const QString& text, int digits) {
    static const QString allowed = QStringLiteral("0123456789ABCDEF");
    QString normal;
    for (const QChar c : text) {
        if (normal.isEmpty() && c == ' ') continue;
        // Letter by letter: in a whole text, a ligature would turn into two letters.
        const QChar upper = c.toUpper();
        if (!allowed.contains(upper) || normal.size() == digits) return std::nullopt;
        normal += upper;
    }
    return normal.rightJustified(digits, '0');
}

HexBox::HexBox(const QString& name, const QString& accessibleName, int digits, QWidget* parent, Blank blank)
    : QLineEdit(parent), digits_(digits), blank_(blank) {
    named(this, name, accessibleName);
    setAlignment(Qt::AlignCenter);
    setAcceptDrops(false);
    showText(QString(digits, '0'));
    noted_ = text();
    connect(this, &QLineEdit::textChanged, this, &HexBox::noteEdit);
    useFont(this, fixedFont, [this] { fitDigits(); });
}

void HexBox::fitDigits() {
    const QFontMetrics metrics(font());
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QSize content(metrics.horizontalAdvance(QString(digits_ + 1, '0')) + 4, metrics.height());
    setFixedWidth(style()->sizeFromContents(QStyle::CT_LineEdit, &option, content, this).width());
}

int HexBox::value() const {
    return dec(text().toStdString());
}

std::optional<QString> HexBox::normalText() const {
    const bool blank = text().count(' ') == text().size();
    if (blank && blank_ == Blank::kept) return text();
    return rutvalidate(text(), digits_);
}

std::optional<int> HexBox::normalValue() const {
    const std::optional<QString> normal = normalText();
    if (!normal || normal->trimmed().isEmpty()) return std::nullopt;
    return dec(normal->toStdString());
}

void HexBox::showText(const QString& text) {
    shown_ = text;
    if (this->text() == text) {
        noteEdit();
        return;
    }
    const bool wasSelected = hasFocus() && selectedText() == this->text();
    setText(text);
    setCursorPosition(0);
    if (wasSelected) selectAll();
}

void HexBox::showValue(int value) {
    showText(hexString(value, digits_));
}

void HexBox::noteEdit() {
    if (text() != shown_ && text() != noted_ && !FocusGate::isInReach(this)) {
        setText(noted_);
        return;
    }
    noted_ = text();
    const bool edited = text() != shown_;
    if (edited != edited_) {
        edited_ = edited;
        emit editedChanged(edited);
    }
    if (edited && state_ == State::outside && isVisible()) enterWritten();
}

/// An assistive tool writes without moving the focus. The user is in the box from then on, so that the text
/// counts when it is left; where another box refuses to be left for it, the text is taken back.
void HexBox::enterWritten() {
    const QString written = text();
    if (HexBox* other = FocusGate::of(this).box(); other != nullptr && !other->leave()) {
        showText(shown_);
        return;
    }
    setState(State::inside);
    setFocus(Qt::OtherFocusReason);
    setText(written);  // what leaving the other box has caused may have refreshed this one
}

void HexBox::startTyping(const QString& text) {
    setFocus(Qt::OtherFocusReason);
    selectAll();
    insert(text);
}

bool HexBox::leave() {
    if (state_ == State::refusing) return false;
    selectAll();
    const std::optional<QString> normal = normalText();
    if (!normal) {
        refuse();
        return false;
    }
    setState(State::leaving);
    const auto gone = qScopeGuard([this] { setState(State::outside); });
    showText(*normal);
    setCursorPosition(0);
    emit validated();
    emit left();
    return true;
}

/// The message comes from the event loop, when whatever wanted the focus has been told that it does not get
/// it: an assistive tool waits for an answer before it can read the message.
void HexBox::refuse() {
    setState(State::refusing);
    setFocus(Qt::OtherFocusReason);  // before the message: what took the focus does not get it back after it
    QMetaObject::invokeMethod(this, &HexBox::showRefusal, Qt::QueuedConnection);
}

void HexBox::showRefusal() {
    if (isVisible()) showMessage(window(), QStringLiteral("Valor incorrecto"));
    setState(State::inside);
    selectAll();
}

void HexBox::setState(State state) {
    state_ = state;
    FocusGate& gate = FocusGate::of(this);
    entered() ? gate.enter(this) : gate.leave(this);
}

void HexBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    watchPresses(true);
    if (state_ != State::outside) return;
    setState(State::inside);
    selectOnPress_ = event->reason() == Qt::MouseFocusReason;
    rutgotfocus();
}

void HexBox::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (staysInBox(event->reason()) || !isVisible()) return;
    watchPresses(false);
    // What took the focus without asking (an assistive tool, for example) has it taken back by a refusal.
    if (entered()) leave();
}

void HexBox::mousePressEvent(QMouseEvent* event) {
    if (selectOnPress_) {
        selectOnPress_ = false;
        return;
    }
    QLineEdit::mousePressEvent(event);
}

bool HexBox::focusNextPrevChild(bool next) {
    if (entered() && !leave()) return true;
    return QLineEdit::focusNextPrevChild(next);
}

void HexBox::watchPresses(bool on) {
    QWindow* handle = window()->windowHandle();
    if (handle == nullptr) return;
    handle->removeEventFilter(this);
    if (on) handle->installEventFilter(this);
}

/// Qt gives the focus to the pressed control before the control sees the press. So the press is
/// caught on its way into the window: refused, the control does not get it. Nor does it when the button has
/// been let go meanwhile, over a message that the leaving brought: a press without its release would stay
/// pressed.
bool HexBox::eventFilter(QObject* watched, QEvent* event) {
    const bool press =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    // Also while the menu bar has the focus, and by the press that makes the window active.
    if (press && entered()) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        QWidget* taker = focusTakerAt(mouse->position().toPoint());
        if (taker != nullptr && taker != this) {
            if (!leave()) return true;
            if (!QGuiApplication::mouseButtons().testFlag(mouse->button())) {
                taker->setFocus(Qt::MouseFocusReason);
                return true;
            }
        }
    }
    return QLineEdit::eventFilter(watched, event);
}

QWidget* HexBox::focusTakerAt(const QPoint& position) const {
    for (QWidget* w = window()->childAt(position); w != nullptr && !w->isWindow(); w = w->parentWidget()) {
        if (w->isEnabled() && (w->focusPolicy() & Qt::ClickFocus) != 0) return w;
    }
    return nullptr;
}

}  // namespace tavinor
