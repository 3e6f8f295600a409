#pragma once

#include <QString>
#include <QWidget>
#include <new>

#include "ui/common/MessageBoxes.h"

namespace tavinor {

/// What the user reads where memory has run out.
inline QString memoryOutText() {
    return QStringLiteral("Memoria insuficiente");
}

/// Runs an event procedure of `window`'s. Where memory runs out, the procedure ends there and the user is
/// told; no exception may reach Qt, which called it. False then.
template <typename Procedure>
bool guardMemory(QWidget* window, const Procedure& procedure) {
    try {
        procedure();
        return true;
    } catch (const std::bad_alloc&) {
        // Told below, when what the procedure held has been given back.
    }
    showMessage(window, memoryOutText());
    return false;
}

}  // namespace tavinor
