#pragma once

#include <QDir>
#include <QString>
#include <cstdint>

namespace tavinor {

/// What the user means by the text in a file dialog's name field.
struct TypedName {
    enum class Kind : std::uint8_t {
        nothing,
        folder,   ///< `path` is one, to be entered.
        pattern,  ///< The files of the folder `path` that fit `pattern` shall be shown.
        file,     ///< `path` is what was chosen, existing or not.
        refused,  ///< No file can have this name.
    };

    Kind kind = Kind::nothing;
    QString path = {};  ///< Absolute.
    QString pattern = {};
};

/// `typed` as seen from `folder`. Every other character than "*" and "?" belongs to the name. A name without
/// extension that no file has gets `suffix` (a few letters); of "prog.hex", "prog.HEX" and "prog.Hex" the
/// newest one is meant. What lies in a folder that is not there, a pattern or nothing, means nothing.
TypedName understand(const QString& typed, const QDir& folder, const QString& suffix);

}  // namespace tavinor
