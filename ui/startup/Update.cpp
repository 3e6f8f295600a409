#include "ui/startup/Update.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <algorithm>
#include <cstdint>

namespace tavinor {

namespace {

constexpr char scheme[] = "http://";

/// The leading digits of `text` after blanks and line ends, else 0. Numbers past a thousand million count as
/// that, so that no weighted value overflows.
std::int64_t leadingNumber(const QByteArray& text) {
    constexpr std::int64_t most = 1'000'000'000;
    std::int64_t value = 0;
    for (const char c : text.trimmed()) {
        if (c < '0' || c > '9') break;
        value = std::min(most, value * 10 + (c - '0'));
    }
    return value;
}

bool isAddress(const QByteArray& text) {
    const bool printable =
        std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
    if (!printable) return false;
    const QUrl url(QString::fromLatin1(text), QUrl::StrictMode);
    return url.isValid() && url.scheme() == QStringLiteral("http") && !url.host().isEmpty();
}

}  // namespace

std::optional<Update> parseUpdateFile(const QByteArray& body) {
    const qsizetype start = body.indexOf(scheme);
    const qsizetype firstDot = body.indexOf('.');
    const qsizetype secondDot = firstDot < 0 ? -1 : body.indexOf('.', firstDot + 1);
    if (start < 0 || secondDot < 0 || secondDot > start) return std::nullopt;
    QByteArray address = body.mid(start);
    while (!address.isEmpty() && QByteArrayLiteral(" \t\r\n").contains(address.back())) address.chop(1);
    if (!isAddress(address)) return std::nullopt;
    return Update{{leadingNumber(body.first(firstDot)),
                   leadingNumber(body.sliced(firstDot + 1, secondDot - firstDot - 1)),
                   leadingNumber(body.sliced(secondDot + 1, start - secondDot - 1))},
                  QString::fromLatin1(address)};
}

bool download(const QString& updaterPath, const QString& address) {
    const QFileInfo updater(updaterPath);
    const bool there = updater.isFile() && updater.isExecutable();
    if (there && QProcess::startDetached(updaterPath, {address}, updater.absolutePath())) return true;
    return QDesktopServices::openUrl(QUrl(address, QUrl::StrictMode));
}

}  // namespace tavinor
