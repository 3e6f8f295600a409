#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "files/File.h"
#include "trace/TraceReader.h"

namespace tavinor {

/// Saves the rows that a trace has at the beginning, one portion after the other, so that a dialog can show
/// how far it is. Whatever ends it, what has been written stays: see behaviour.md, Trace: file.
class TraceFile {
  public:
    /// What writing takes at most: the text of a portion, and a machine to execute its rows again.
    static constexpr std::uint64_t memoryNeeded = 32 * 1024 * 1024;

    TraceFile(const Trace& trace, std::filesystem::path path);

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

    TraceReader reader_;
    const std::uint64_t rows_;
    std::uint64_t next_ = 0;
    const std::filesystem::path path_;
    File file_;
    std::string text_;
};

}  // namespace tavinor
