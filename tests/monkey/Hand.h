#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include "tests/monkey/Chance.h"
#include "tests/monkey/Diary.h"

namespace tavinor::monkey {

/// Random mouse and keys for a window. Each deed is noted before it is done.
class Hand {
  public:
    Hand(Chance& chance, Diary& diary) : chance_(chance), diary_(diary) {}

    /// Any of those below.
    void useWindow(QWidget* window);

    void clickSomewhere(QWidget* window);
    void drag(QWidget* window);
    void turnSomeWheel(QWidget* window);
    void pressSomeKey(QWidget* window);
    void pressAccessKey(QWidget* window);
    void typeSomething(QWidget* window);
    void fillSomeBox(QWidget* window);
    void resizeWindow(QWidget* window);
    void closeWindow(QWidget* window);
    void chooseFromMenus(QWidget* window);
    /// What an assistive tool does at once: it asks no focus and sends no key.
    void actAsAssistiveTool(QWidget* window);

    /// Clicks in the middle of a control, by its name; does nothing where there is none.
    void clickOn(QWidget* window, const QString& name);
    void clickOn(QWidget* control);
    void press(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Puts `text` in place of what a box holds.
    void fill(QWidget* box, const QString& text);
    QString someText();

    /// A dialog may have come while a button of the mouse was down.
    void letGoOfTheMouse(QWidget* window);

  private:
    QWidget* someChild(QWidget* window);
    [[nodiscard]] QPoint somePlace(const QWidget* widget);
    void typeText(QWidget* window, const QString& text);

    Chance& chance_;
    Diary& diary_;
};

/// What to call a widget in the diary.
QString nameOf(const QWidget* widget);

}  // namespace tavinor::monkey
