#pragma once

#include <QString>
#include <cstdint>

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

}  // namespace tavinor
