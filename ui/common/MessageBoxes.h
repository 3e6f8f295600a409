#pragma once

#include <QString>

class QWidget;

/// The only place that makes message boxes: modal, plain text (a path that looks like markup is shown as it
/// is), no icon, the application's title. See behaviour.md, Common: messages.
namespace tavinor {

/// A box with an OK button. A carriage return in `text` shows as a line break. `rightAligned` is for the
/// loader, which asks for its text at the right.
void showMessage(QWidget* parent, const QString& text, bool rightAligned = false);

enum class DefaultAnswer { yes, no };

/// A question with Yes and No; Esc and the close box mean No, Enter the default.
bool askYesNo(QWidget* parent, const QString& question, DefaultAnswer byDefault = DefaultAnswer::yes);

enum class SaveAnswer { yes, no, cancel };

/// A question with Yes, No and Cancel; Esc and the close box mean Cancel.
SaveAnswer askYesNoCancel(QWidget* parent, const QString& question);

}  // namespace tavinor
