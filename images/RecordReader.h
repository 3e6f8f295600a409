#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "files/File.h"
#include "files/WorkObserver.h"

namespace tavinor {

/// Reads the lines of a HEX file, one after the other, without the blanks around them. Lines end in CR LF, LF
/// or CR; the last one needs no end.
///
/// A record never needs more than `record::maximumLength` characters from the start of its line and the last
/// two of it, so of a longer line only these are kept: a file without a line end costs no memory.
class RecordReader {
  public:
    /// @throws std::ios_base::failure when `path` cannot be opened or is no regular file.
    RecordReader(const std::filesystem::path& path, WorkObserver& observer);

    /// The next line, or nothing at the end of the file. @throws std::ios_base::failure on a read error;
    /// Cancelled, also in the middle of a line.
    std::optional<std::string> next();

  private:
    int nextCharacter();
    void fillBuffer();

    File file_;
    WorkObserver& observer_;
    double fileSize_;
    double bytesRead_ = 0;
    std::vector<char> buffer_;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
    bool afterCarriageReturn_ = false;
};

}  // namespace tavinor
