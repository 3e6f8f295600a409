#pragma once

#include <QIdentityProxyModel>

namespace tavinor {

/// The files of a file dialog with their sizes and dates as the program writes them. Qt's own model
/// writes them as the desktop does, in whatever language that is.
class FileDetails : public QIdentityProxyModel {
    Q_OBJECT

  public:
    using QIdentityProxyModel::QIdentityProxyModel;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
};

}  // namespace tavinor
