#pragma once

#include <QFileIconProvider>

namespace tavinor {

/// What a file dialog says and draws of a file: its kind by its name alone. Qt would read the
/// beginning of every file of a folder, and stand still where one has nothing to give, as some of Linux's
/// /proc have, or gives it slowly.
class FileKinds : public QFileIconProvider {
  public:
    using QFileIconProvider::icon;

    [[nodiscard]] QIcon icon(const QFileInfo& info) const override;
    [[nodiscard]] QString type(const QFileInfo& info) const override;
};

}  // namespace tavinor
