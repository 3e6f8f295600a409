#pragma once

#include <filesystem>
#include <string_view>

#include "files/File.h"

namespace tavinor {

/// A file that is created, or replaced when it exists, and written at once.
class OutputFile {
  public:
    explicit OutputFile(const std::filesystem::path& path) : file_(File::forWriting(path)) {}

    [[nodiscard]] bool created() const { return file_.isOpen(); }

    /// Writes `contents` and closes the file. False after any error: the file was not created, the disk is
    /// full, closing failed. What was written by then stays.
    bool finish(std::string_view contents);

  private:
    File file_;
};

}  // namespace tavinor
