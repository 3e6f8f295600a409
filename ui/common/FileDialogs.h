#pragma once

#include <QString>
#include <optional>

class QWidget;

/// The only place that makes file dialogs: Qt's own, the same on every desktop. Any name may be typed,
/// existing or not, but for patterns, which show what fits. The dialog asks nothing by itself: what an
/// existing or a missing file means is the caller's question. See behaviour.md, Common: file dialogs.
namespace tavinor {

struct FileDialogTexts {
    QString title;
    /// Pairs of text and pattern, separated by "|": "Fichero de texto (*.txt)|*.txt|Todos los ficheros
    /// (*.*)|*.*". The pattern "*.*" means every file, also one without a dot; case does not matter.
    QString filter;
    QString initialName;  ///< Preset in the name field; may be a pattern.
    /// "hex": where "prog" was typed and there is no file of that bare name, prog.hex is meant.
    QString defaultSuffix = {};
};

/// The full path that the user chose, or nothing when the dialog was cancelled.
std::optional<QString> askFileToOpen(QWidget* parent, const FileDialogTexts& texts);
std::optional<QString> askFileToSave(QWidget* parent, const FileDialogTexts& texts);

}  // namespace tavinor
