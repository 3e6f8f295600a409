#include "tests/monkey/Hand.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTest>
#include <QWindow>

#include "tests/support/RealInput.h"

namespace tavinor::monkey {

namespace {

struct Deed {
    int weight;
    void (Hand::*act)(QWidget*);
};
constexpr Deed deeds[] = {
    {24, &Hand::clickSomewhere},    {16, &Hand::pressSomeKey}, {8, &Hand::pressAccessKey},
    {6, &Hand::typeSomething},      {14, &Hand::fillSomeBox},  {4, &Hand::drag},
    {4, &Hand::turnSomeWheel},      {2, &Hand::resizeWindow},  {2, &Hand::chooseFromMenus},
    {8, &Hand::actAsAssistiveTool},
};

struct KeyPress {
    int weight;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};
const KeyPress keys[] = {
    {8, Qt::Key_Tab},
    {3, Qt::Key_Backtab, Qt::ShiftModifier},
    {6, Qt::Key_Return},
    {2, Qt::Key_Enter, Qt::KeypadModifier},
    {3, Qt::Key_Escape},
    {6, Qt::Key_Space},
    {5, Qt::Key_Up},
    {5, Qt::Key_Down},
    {2, Qt::Key_Left},
    {2, Qt::Key_Right},
    {3, Qt::Key_PageUp},
    {3, Qt::Key_PageDown},
    {1, Qt::Key_Home},
    {1, Qt::Key_End},
    {1, Qt::Key_Home, Qt::ControlModifier},
    {1, Qt::Key_End, Qt::ControlModifier},
    {2, Qt::Key_Down, Qt::ShiftModifier},
    {4, Qt::Key_F9},
    {2, Qt::Key_F3},
    {2, Qt::Key_F7},
    {1, Qt::Key_F5, Qt::ShiftModifier},
    {1, Qt::Key_F7, Qt::ShiftModifier},
    {1, Qt::Key_F10},
    {1, Qt::Key_Alt},
    {2, Qt::Key_Menu},
    {2, Qt::Key_Backspace},
    {2, Qt::Key_Delete},
    {2, Qt::Key_A, Qt::ControlModifier},
    {2, Qt::Key_C, Qt::ControlModifier},
    {2, Qt::Key_V, Qt::ControlModifier},
    {1, Qt::Key_X, Qt::ControlModifier},
    {1, Qt::Key_Z, Qt::ControlModifier},
    {1, Qt::Key_Y, Qt::ControlModifier},
    {1, Qt::Key_N, Qt::ControlModifier},
    {1, Qt::Key_G, Qt::ControlModifier},
    {1, Qt::Key_M, Qt::ControlModifier},
    {2, Qt::Key_B, Qt::ControlModifier},
    {1, Qt::Key_S, Qt::ControlModifier},
};

const char* const texts[] = {
    "0",
    "00",
    "7f",
    "C3",
    "76",
    "fb",
    "0000",
    "1234",
    "ffff",
    "FFFE",
    "0010",
    "8000",
    "",
    " ",
    "xyz",
    "12345",
    "-1",
    "g",
    " 5",
    "5 ",
    "é",
    "ß",
    "\u0663",
    "&p",
    "<b>",
    "0x12",
    "99999999",
    "suma",
    "nop",
    "hlt",
    "\t",
    "mvi a,3ah",
    "lxi h,1234h ; x",
    "fin: hlt",
    "inicio: add b",
};

/// A drag of text has an event loop of its own that ends with the release of the button, which would come
/// only after it.
bool dragsText(const QWidget* widget) {
    for (; widget != nullptr; widget = widget->parentWidget()) {
        if (qobject_cast<const QPlainTextEdit*>(widget) != nullptr) return true;
    }
    return false;
}

bool reaches(const QWidget* widget, const QPoint& place) {
    return widget->window()->rect().contains(widget->mapTo(widget->window(), place));
}

}  // namespace

QString nameOf(const QWidget* widget) {
    QString name = QString::fromLatin1(widget->metaObject()->className());
    if (!widget->objectName().isEmpty()) name += ' ' + widget->objectName();
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    if (button != nullptr) name += " '" + button->text() + '\'';
    return name;
}

void Hand::useWindow(QWidget* window) {
    (this->*chance_.byWeight(deeds).act)(window);
}

QWidget* Hand::someChild(QWidget* window) {
    QList<QWidget*> shown{window};
    for (QWidget* child : window->findChildren<QWidget*>()) {
        if (child->isVisible() && child->window() == window) shown.append(child);
    }
    return chance_.oneOf(shown);
}

QPoint Hand::somePlace(const QWidget* widget) {
    return {chance_.below(widget->width()), chance_.below(widget->height())};
}

void Hand::clickSomewhere(QWidget* window) {
    QWidget* child = someChild(window);
    const QPoint place = somePlace(child);
    const bool twice = chance_.oneIn(8);
    const Qt::MouseButton button = chance_.oneIn(10) ? Qt::RightButton : Qt::LeftButton;
    constexpr Qt::KeyboardModifier modifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::NoModifier,
                                                  Qt::ControlModifier, Qt::ShiftModifier};
    const Qt::KeyboardModifier modifier = chance_.oneOf(modifiers);
    if (!reaches(child, place)) return;
    diary_.note(QStringLiteral("%1 with button %2 at %3,%4 of %5")
                    .arg(twice ? "double click" : "click")
                    .arg(static_cast<int>(button))
                    .arg(place.x())
                    .arg(place.y())
                    .arg(nameOf(child)));
    if (twice) {
        doubleClickAt(child, place);
    } else {
        clickAt(child, place, button, modifier);
    }
}

void Hand::drag(QWidget* window) {
    QWidget* child = someChild(window);
    const QPoint from = somePlace(child);
    const QPoint to = somePlace(child);
    if (dragsText(child) || !reaches(child, from) || !reaches(child, to)) return;
    diary_.note(QStringLiteral("drag in ") + nameOf(child));
    const QPointer<QWindow> handle = window->windowHandle();
    const QPoint start = child->mapTo(window, from);
    const QPoint end = child->mapTo(window, to);
    QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, start);
    for (int part = 1; part <= 4 && handle != nullptr && handle->isVisible(); ++part) {
        QTest::mouseMove(handle, start + (end - start) * part / 4);
    }
    if (handle != nullptr && handle->isVisible()) {
        QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, end);
    }
}

void Hand::letGoOfTheMouse(QWidget* window) {
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
        if (QGuiApplication::mouseButtons().testFlag(button)) {
            QTest::mouseRelease(window->windowHandle(), button, Qt::NoModifier, QPoint(1, 1));
        }
    }
}

void Hand::turnSomeWheel(QWidget* window) {
    QWidget* child = someChild(window);
    const int steps = chance_.between(-5, 5);
    if (!reaches(child, child->rect().center())) return;
    diary_.note(QStringLiteral("wheel %1 on %2").arg(steps).arg(nameOf(child)));
    turnWheel(child, steps);
}

void Hand::press(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    diary_.note(QStringLiteral("key %1 in %2")
                    .arg(QKeySequence(QKeyCombination(modifiers, key)).toString(), nameOf(window)));
    pressKey(window, key, modifiers);
}

void Hand::pressSomeKey(QWidget* window) {
    const KeyPress& key = chance_.byWeight(keys);
    press(window, key.key, key.modifiers);
}

void Hand::pressAccessKey(QWidget* window) {
    press(window, static_cast<Qt::Key>(Qt::Key_A + chance_.below(26)), Qt::AltModifier);
}

QString Hand::someText() {
    return QString::fromUtf8(chance_.oneOf(texts));
}

/// The window may go while it is being typed in.
void Hand::typeText(QWidget* window, const QString& text) {
    const QPointer<QWidget> still = window;
    for (const QChar letter : text) {
        if (still != nullptr && still->isVisible()) tavinor::typeText(still, letter);
    }
}

void Hand::typeSomething(QWidget* window) {
    const QString text = someText();
    diary_.note(QStringLiteral("types '%1'").arg(text));
    typeText(window, text);
}

void Hand::fill(QWidget* box, const QString& text) {
    diary_.note(QStringLiteral("fills %1 with '%2'").arg(nameOf(box), text));
    const QPointer<QWidget> still = box;
    clickIn(box);
    if (still != nullptr && still->isVisible()) pressKey(still, Qt::Key_A, Qt::ControlModifier);
    if (still != nullptr && still->isVisible()) pressKey(still, Qt::Key_Delete);
    if (still != nullptr && still->isVisible()) typeText(still->window(), text);
}

void Hand::fillSomeBox(QWidget* window) {
    QList<QLineEdit*> boxes;
    for (QLineEdit* box : window->findChildren<QLineEdit*>()) {
        if (box->isVisible() && box->isEnabled() && box->window() == window &&
            reaches(box, box->rect().center())) {
            boxes.append(box);
        }
    }
    const QString text = someText();
    if (!boxes.isEmpty()) fill(chance_.oneOf(boxes), text);
}

void Hand::resizeWindow(QWidget* window) {
    const QSize size(chance_.between(1, 1600), chance_.between(1, 1100));
    diary_.note(
        QStringLiteral("resizes %1 to %2x%3").arg(nameOf(window)).arg(size.width()).arg(size.height()));
    window->resize(size);
}

void Hand::closeWindow(QWidget* window) {
    diary_.note(QStringLiteral("closes ") + nameOf(window));
    window->close();
}

void Hand::chooseFromMenus(QWidget* window) {
    const auto* bar = window->findChild<QMenuBar*>();
    if (bar == nullptr) return;
    QAction* action = chance_.oneOf(bar->actions());
    diary_.note(QStringLiteral("menu ") + action->text());
    const QPoint place = bar->actionGeometry(action).center();
    if (reaches(bar, place)) clickAt(const_cast<QMenuBar*>(bar), place);
}

/// The press of a button shows it down for a while first: what the clock decides is no part of the game.
void Hand::actAsAssistiveTool(QWidget* window) {
    QWidget* child = someChild(window);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(child);
    const QString text = someText();
    if (spoken == nullptr) return;
    if (qobject_cast<QLineEdit*>(child) != nullptr) {
        diary_.note(QStringLiteral("a tool writes '%1' into %2").arg(text, nameOf(child)));
        writeByAssistiveTool(child, text);
        return;
    }
    if (spoken->childCount() > 0 && spoken->actionInterface() == nullptr) {
        spoken = spoken->child(chance_.below(spoken->childCount()));
    }
    QAccessibleActionInterface* actions = spoken == nullptr ? nullptr : spoken->actionInterface();
    if (actions == nullptr) return;
    QStringList names = actions->actionNames();
    names.removeAll(QAccessibleActionInterface::pressAction());
    names.removeAll(QAccessibleActionInterface::showMenuAction());
    if (names.isEmpty()) return;
    const QString name = chance_.oneOf(names);
    diary_.note(QStringLiteral("a tool does %1 in %2").arg(name, nameOf(child)));
    actions->doAction(name);
}

void Hand::clickOn(QWidget* window, const QString& name) {
    for (QWidget* control : window->findChildren<QWidget*>(name)) {
        if (control->window() == window) {
            clickOn(control);
            return;
        }
    }
}

void Hand::clickOn(QWidget* control) {
    if (!control->isVisible() || !reaches(control, control->rect().center())) return;
    diary_.note(QStringLiteral("click on ") + nameOf(control));
    clickIn(control);
}

}  // namespace tavinor::monkey
