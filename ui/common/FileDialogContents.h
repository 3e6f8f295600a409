#pragma once

#include <QFileIconProvider>
#include <QIdentityProxyModel>
#include <QList>
#include <QUrl>

/// What a file dialog shows beside the names of files.
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

/// The files of a file dialog with their sizes and dates as the program writes them. Qt's own model
/// writes them as the desktop does, in whatever language that is.
class FileDetails : public QIdentityProxyModel {
    Q_OBJECT

  public:
    using QIdentityProxyModel::QIdentityProxyModel;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
};

/// What the side bar of a file dialog offers: the computer, and of these folders those that are there: the
/// user's own, its documents and its desktop, and the examples installed with the program that lies in
/// `programFolder`.
QList<QUrl> places(const QString& programFolder);

}  // namespace tavinor
