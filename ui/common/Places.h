#pragma once

#include <QList>
#include <QUrl>

namespace tavinor {

/// What the side bar of a file dialog offers: the computer, and of these folders those that are there: the
/// user's own, its documents and its desktop, and the examples installed with the program that lies in
/// `programFolder`.
QList<QUrl> places(const QString& programFolder);

}  // namespace tavinor
