#pragma once

#include <Qt>

class QEvent;
class QKeyEvent;

/// What the user's input does to the text of a box.
namespace tavinor {

/// Qt takes it for this on some platforms only.
constexpr QKeyCombination redoKey = Qt::ControlModifier | Qt::Key_Y;

/// Whether the event may change the text, or depends on where it ends. The beginning of a menu's key does
/// not.
bool needsWholeText(const QEvent& event);
/// Whether all that Qt does for this key is to take away what is selected.
bool removesSelection(const QKeyEvent& event);
/// Whether Qt puts something in the place of what is selected.
bool replacesSelection(const QKeyEvent& event);

}  // namespace tavinor
