#pragma once

#include <QString>
#include <cstdint>
#include <filesystem>
#include <string>

#include "files/File.h"

namespace tavinor {

class TraceStore;

/// Saves the rows that a trace has at the beginning, one portion after the other, so that a dialog can show
/// how far it is. Whatever ends it, what has been written stays.
class TraceFile {
  public:
    /// What writing takes at most, beside the rows themselves: the text of a portion and its rows unpacked.
    static constexpr std::uint64_t memoryNeeded = 32 * 1024 * 1024;

    TraceFile(const TraceStore& store, const QString& path);

    /// Creates or empties the file and writes the header line. False on an error.
    bool open();
    /// Writes the next portion. False on an error. @throws std::bad_alloc, and then the portion is not
    /// written.
    bool writeMore();
    /// Closes the file. False when what was written did not all arrive.
    bool close();

    [[nodiscard]] bool finished() const { return next_ >= rows_; }
    [[nodiscard]] double fractionWritten() const;

  private:
    bool write();

    const TraceStore& store_;
    const std::uint64_t rows_;
    std::uint64_t next_ = 0;
    const std::filesystem::path path_;
    File file_;
    std::string text_;
};

}  // namespace tavinor
