#include "ui/startup/UpdateCheck.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <optional>

namespace tavinor {

namespace {

constexpr int statusOk = 200;
constexpr qsizetype mostBytes = 64 * 1024;

/// A plain request: what arrives is what counts, with nothing followed, unpacked or remembered.
QNetworkRequest plainRequest(const QUrl& address) {
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

}  // namespace

UpdateCheck::UpdateCheck(const QUrl& address, const Version& own, QObject* parent)
    : QObject(parent), address_(address), own_(own), network_(this) {}

UpdateCheck::~UpdateCheck() {
    delete reply_;
}

void UpdateCheck::start() {
    if (!address_.isValid() || reply_ != nullptr) return;
    reply_ = network_.get(plainRequest(address_));
    reply_->setReadBufferSize(mostBytes);
    connect(reply_, &QIODevice::readyRead, this, &UpdateCheck::read);
    connect(reply_, &QNetworkReply::finished, this, &UpdateCheck::finish);
}

/// A body that is too long is no update file: the request ends there and none of it counts.
void UpdateCheck::read() {
    body_ += reply_->readAll();
    if (body_.size() > mostBytes) reply_->abort();
}

void UpdateCheck::finish() {
    const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply_->error() != QNetworkReply::NoError || status != statusOk) return;
    body_ += reply_->readAll();
    if (body_.size() > mostBytes) return;
    const std::optional<Update> update = parseUpdateFile(body_);
    if (update && update->version.value() > own_.value()) emit updateFound(*update);
}

}  // namespace tavinor
