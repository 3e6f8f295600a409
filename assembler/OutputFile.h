#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>

namespace tavinor {

/// A file that is created, or replaced when it exists, and written at once.
class OutputFile {
  public:
    explicit OutputFile(const std::filesystem::path& path);

    [[nodiscard]] bool created() const { return file_.is_open(); }

    /// Writes `contents` and closes the file. False after any error: the file was not created, the disk is
    /// full, closing failed. What was written by then stays.
    bool finish(std::string_view contents);

  private:
    std::ofstream file_;
};

}  // namespace tavinor
