#pragma once

#include <QByteArray>
#include <string_view>

namespace tavinor {

/// The longest line that a pane shows as it is: room for the digits of 64 KiB of code, in bytes.
inline constexpr std::size_t longestPaneLine = std::size_t{132} * 1024;

/// UTF-8 lines with their ends, for a pane: a line longer than that is broken into short ones. Qt
/// would take minutes to lay out a line of many megabytes, and does not answer meanwhile.
QByteArray withoutLongLines(std::string_view lines);

}  // namespace tavinor
