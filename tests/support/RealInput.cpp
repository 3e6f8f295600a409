#include "tests/support/RealInput.h"

#include <QtTest/qtestspontaneevent.h>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QRadioButton>
#include <QTest>
#include <QThread>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

namespace tavinor {

namespace {

/// The window of a widget, made active as the window manager does when the dialog before it has closed: the
/// platform without a screen has no window manager.
QWindow* handleOf(const QWidget* widget) {
    QWidget* window = widget->window();
    QWindow* handle = window->windowHandle();
    if (handle == nullptr) qFatal("%s has not been shown", qPrintable(window->objectName()));
    const QWidget* modal = QApplication::activeModalWidget();
    const bool reachable =
        QApplication::activePopupWidget() == nullptr && (modal == nullptr || modal == window);
    if (reachable && QApplication::activeWindow() != window) {
        window->activateWindow();
        waitActive(window);
    }
    return handle;
}

/// A release and a press of one moment would be a repeat.
void awaitNextMoment() {
    QThread::msleep(1);
}

}  // namespace

bool waitActive(const QWidget* window) {
    return QTest::qWaitFor([window] { return QApplication::activeWindow() == window; });
}

bool showActive(QWidget* window) {
    window->show();
    window->activateWindow();
    return waitActive(window);
}

void clickIn(QWidget* widget, Qt::KeyboardModifiers modifiers) {
    const bool marked =
        qobject_cast<QCheckBox*>(widget) != nullptr || qobject_cast<QRadioButton*>(widget) != nullptr;
    const QPoint middle = widget->rect().center();
    clickAt(widget, marked ? QPoint(8, middle.y()) : middle, Qt::LeftButton, modifiers);
}

void clickAt(QWidget* widget, const QPoint& position, Qt::MouseButton button,
             Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(handleOf(widget), button, modifiers, widget->mapTo(widget->window(), position));
}

void doubleClickAt(QWidget* widget, const QPoint& position) {
    QTest::mouseDClick(handleOf(widget), Qt::LeftButton, Qt::NoModifier,
                       widget->mapTo(widget->window(), position));
}

void clickAgainAt(QWidget* widget, const QPoint& position) {
    QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval;  // each release has added that much
    clickAt(widget, position);
}

void drag(QWidget* widget, const QList<QPoint>& positions) {
    QWindow* handle = handleOf(widget);
    const auto inWindow = [widget](const QPoint& position) {
        return widget->mapTo(widget->window(), position);
    };
    QTest::mousePress(handle, Qt::LeftButton, {}, inWindow(positions.first()));
    for (const QPoint& position : positions) QTest::mouseMove(handle, inWindow(position));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, inWindow(positions.last()));
}

void pressKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(handleOf(widget), key, modifiers);
    awaitNextMoment();
}

void typeText(QWidget* widget, const QString& text) {
    for (const QChar letter : text) {
        QTest::sendKeyEvent(QTest::Click, handleOf(widget), Qt::Key_unknown, letter, Qt::NoModifier);
        awaitNextMoment();
    }
}

void repeatKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers, int times) {
    for (int i = 0; i < times; ++i) {
        QTest::simulateEvent(handleOf(widget), false, key, modifiers, {}, true);
        QTest::simulateEvent(handleOf(widget), true, key, modifiers, {}, true);
    }
}

void repeatKeyUnrecognised(QWidget* focused, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    static ulong moment = 1'000'000;
    ++moment;
    QKeyEvent release(QEvent::KeyRelease, key, modifiers);
    release.setTimestamp(moment);
    qApp->notify(focused, &release);
    qt_sendShortcutOverrideEvent(focused, moment, key, modifiers);
}

void turnWheel(QWidget* widget, int steps, Qt::Orientation orientation) {
    const int angle = steps * QWheelEvent::DefaultDeltasPerStep;
    const QPointF place = widget->mapTo(widget->window(), widget->rect().center());
    QWheelEvent event(place, handleOf(widget)->mapToGlobal(place), {},
                      orientation == Qt::Vertical ? QPoint(0, angle) : QPoint(angle, 0), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);  // else it would look like one of the program's own
    qApp->notify(handleOf(widget), &event);
}

bool pressByAssistiveTool(QWidget* widget) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
    QAccessibleActionInterface* actions = interface == nullptr ? nullptr : interface->actionInterface();
    if (actions == nullptr) return false;
    for (const QString& action :
         {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction()}) {
        if (!actions->actionNames().contains(action)) continue;
        actions->doAction(action);
        QTest::qWait(150);  // a tool's press shows the button down for a moment before it acts
        return true;
    }
    return false;
}

void writeByAssistiveTool(QWidget* box, const QString& text) {
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(box);
    if (spoken == nullptr || spoken->editableTextInterface() == nullptr) qFatal("no box to write in");
    spoken->editableTextInterface()->replaceText(0, spoken->textInterface()->characterCount(), text);
}

}  // namespace tavinor
