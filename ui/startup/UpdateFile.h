#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "ui/startup/Version.h"

namespace tavinor {

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

}  // namespace tavinor
