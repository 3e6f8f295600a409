#pragma once

#include <filesystem>
#include <string_view>

#include "files/File.h"

namespace tavinor {

/// A file that is written beside the one it replaces and put in its place when it is complete. Whatever
/// happens meanwhile, the name has the old bytes or the new ones, never a part of them.
///
/// The new file has the permissions of the old one, or of a model where there is none. A symbolic link stays,
/// and what it leads to is replaced.
class ReplacedFile {
  public:
    /// Creates the file beside `path`. What is there already must be a regular file that may be written to.
    explicit ReplacedFile(const std::filesystem::path& path, const std::filesystem::path& model = {});
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    /// Without `commit`, everything is as it was.
    ~ReplacedFile();

    [[nodiscard]] bool created() const { return file_.isOpen(); }
    bool write(std::string_view bytes) { return file_.write(bytes); }
    /// Puts the file in its place. Only to be called when every `write` has succeeded.
    bool commit();

  private:
    bool createBeside();

    std::filesystem::path path_;
    std::filesystem::path beside_;  // empty: there is none
    File file_;
    std::filesystem::perms permissions_ = std::filesystem::perms::unknown;  // of the old file, if any
};

}  // namespace tavinor
