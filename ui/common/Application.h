#pragma once

#include <QIcon>

class QCoreApplication;

/// What the whole program has: its icon and its language.
namespace tavinor {

/// The program's icon, drawn from its vector picture for every size in use.
QIcon applicationIcon();

/// Makes Qt speak Spanish, whatever the desktop's language: standard buttons, file dialogs, context
/// menus. To be called once, before the first window.
void installSpanish(QCoreApplication& application);

}  // namespace tavinor
