#pragma once

class QCoreApplication;

namespace tavinor {

/// Makes Qt speak Spanish, whatever the desktop's language: standard buttons, file dialogs, context
/// menus. To be called once, before the first window.
void installSpanish(QCoreApplication& application);

}  // namespace tavinor
