#pragma once

#include <QList>
#include <QPoint>
#include <QString>
#include <Qt>

class QWidget;

/// Mouse and keys as a user's reach a window: through the window system's path, so that focus, shortcuts and
/// access keys do what they do in real life. Sent to a widget directly they would skip all of that.
namespace tavinor {

/// Waits until a window is the active one, not only the owner of it. False when it does not become so.
bool waitActive(const QWidget* window);
/// Shows a window and waits until it is active.
bool showActive(QWidget* window);

/// Clicks in the middle of a widget; a check box or option is clicked on its mark.
void clickIn(QWidget* widget, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void clickAt(QWidget* widget, const QPoint& position, Qt::MouseButton button = Qt::LeftButton,
             Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void doubleClickAt(QWidget* widget, const QPoint& position);
/// The second click of a double-click, whose first one was the last click: the program has run in between.
void clickAgainAt(QWidget* widget, const QPoint& position);

/// Presses the left button at the first position, moves to the others one after the other, and lets go there.
void drag(QWidget* widget, const QList<QPoint>& positions);

/// Presses and releases a key in the widget's window: it goes to whatever has the focus there.
void pressKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void typeText(QWidget* widget, const QString& text);
/// The repeats of a key that was pressed and is held.
void repeatKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers, int times);
/// A repeat that Qt has not recognised as one: a release and a press of the same moment.
void repeatKeyUnrecognised(QWidget* focused, Qt::Key key, Qt::KeyboardModifiers modifiers);

/// Turns the wheel over the middle of a widget; positive steps are away from the user, or to the left.
void turnWheel(QWidget* widget, int steps, Qt::Orientation orientation = Qt::Vertical);

/// Presses a button or toggles a check box as an assistive tool does: without moving the focus first. False
/// when the control offers no such action.
bool pressByAssistiveTool(QWidget* widget);
/// Puts `text` in place of what a box holds, as an assistive tool does: without moving the focus.
void writeByAssistiveTool(QWidget* box, const QString& text);

}  // namespace tavinor
