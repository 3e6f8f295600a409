#pragma once

#include <QIcon>

namespace tavinor {

/// The program's icon, drawn from its vector picture for every size in use.
QIcon applicationIcon();

}  // namespace tavinor
