#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>

/// An update: its version, what the server says of it, and handing it over.
namespace tavinor {

/// A version of the program: three numbers, compared by one weighted value.
struct Version {
    std::int64_t major = 0;
    std::int64_t minor = 0;
    std::int64_t revision = 0;

    [[nodiscard]] std::int64_t value() const { return major * 1'000'000 + minor * 1'000 + revision; }
    [[nodiscard]] QString text() const {
        return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(revision);
    }
};

/// What the update server offers.
struct Update {
    Version version;
    QString address;  ///< Where it can be downloaded: always "http://" and a host, printable ASCII.
};

/// Reads an update file: the new version as "major.minor.revision", then where to download it from: what
/// begins with "http://" and goes to the end, blanks and line ends after it aside. The numbers are read
/// leniently (leading digits, else 0). Nothing when the dots or an address are missing; a file can bring
/// nothing but the address of a web page into the program.
std::optional<Update> parseUpdateFile(const QByteArray& body);

/// Hands a download address over: to the updater as its one argument, without a shell, or to the user's
/// browser where there is no updater that starts. False when nothing took it.
bool download(const QString& updaterPath, const QString& address);

}  // namespace tavinor
