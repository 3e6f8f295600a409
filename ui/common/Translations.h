#pragma once

class QCoreApplication;

namespace tavinor {

/// Makes the toolkit speak Spanish, whatever the desktop's language: standard buttons, file dialogs, context
/// menus. To be called once, before the first window.
void installSpanish(QCoreApplication& application);

}  // namespace tavinor
