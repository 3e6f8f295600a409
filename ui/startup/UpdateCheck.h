#pragma once

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QObject>
#include <QUrl>

#include "ui/startup/Update.h"

class QNetworkReply;

namespace tavinor {

/// Asks the update server once whether there is a newer version. Whatever goes wrong, nothing happens; the
/// request ends with this object. See behaviour.md, Start-up: updates.
class UpdateCheck : public QObject {
    Q_OBJECT

  public:
    UpdateCheck(const QUrl& address, const Version& own, QObject* parent);
    ~UpdateCheck() override;

    void start();

  signals:
    void updateFound(const Update& update);

  private:
    void read();
    void finish();

    QUrl address_;
    Version own_;
    QNetworkAccessManager network_;
    QNetworkReply* reply_ = nullptr;
    QByteArray body_;
};

}  // namespace tavinor
