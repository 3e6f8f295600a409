#pragma once

#include <QByteArray>
#include <cstddef>
#include <string_view>

namespace tavinor {

/// Makes the lines of a text fit for a pane. Qt lays out each line in view as a whole, at every paint: with
/// long ones in all of them, or with one of many megabytes, it would not answer for seconds or minutes. So
/// there is room for so much in long lines, and those that come when it is full are broken into short ones.
class LongLines {
  public:
    /// In bytes. Twice what the digits of 64 KiB of code take, so that each line of a program that fits its
    /// memory is whole, with its source.
    static constexpr std::size_t room = std::size_t{264} * 1024;

    /// Appends the next lines, UTF-8 with their ends, to `text`.
    void append(QByteArray& text, std::string_view lines);

  private:
    void appendLine(QByteArray& text, std::string_view line);

    std::size_t left_ = room;
};

}  // namespace tavinor
