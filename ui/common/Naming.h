#pragma once

#include <QLabel>
#include <QString>
#include <QWidget>

namespace tavinor {

/// The application's title: caption of its windows and message boxes.
inline QString applicationTitle() {
    return QStringLiteral("Tavinor");
}

/// Gives a control its own name, by which tests, style sheets and scripts find it, and the name that a screen
/// reader says. Returns the control.
template <typename Widget>
Widget* named(Widget* widget, const QString& objectName, const QString& accessibleName) {
    widget->setObjectName(objectName);
    widget->setAccessibleName(accessibleName);
    return widget;
}

/// A caption beside or above `control`; assistive tools are told that they belong together.
inline QLabel* caption(const QString& text, QWidget* control, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(control);
    return label;
}

}  // namespace tavinor
