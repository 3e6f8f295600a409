#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "files/File.h"
#include "files/WorkObserver.h"

namespace tavinor {

/// A file that is written beside the one it replaces and put in its place when it is complete. Whatever
/// happens meanwhile, the name has the old bytes or the new ones, never a part of them.
///
/// The new file has the owner, the group and the permissions of the old one; where there is none, the
/// permissions of a model. A symbolic link stays, and what it leads to is replaced. Where another file cannot
/// take the place of the old one (it has other names as well, which would keep the old bytes; its folder
/// takes no new file; its owner is another one; it is a mount point), the old one is rewritten when all is
/// there. See behaviour.md, Files: replacing.
class ReplacedFile {
  public:
    /// Creates the file beside `path`. What is there already must be a regular file that may be written to.
    explicit ReplacedFile(const std::filesystem::path& path, const std::filesystem::path& model = {});
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;
    /// Without `commit`, everything is as it was.
    ~ReplacedFile();

    [[nodiscard]] bool created() const { return file_.isOpen(); }
    bool write(std::string_view bytes);
    /// Waits until what was written is safe from a power failure, so that `commit` takes the less time.
    bool flush() { return inPlace_ || file_.flush(); }
    /// Puts the file in its place. Only to be called when every `write` has succeeded. Where that takes long,
    /// `observer` can end it. @throws Cancelled
    bool commit(WorkObserver& observer);
    bool commit();

  private:
    bool createBeside(bool secret);
    bool rewriteOld(WorkObserver& observer);
    void removeBeside();

    std::filesystem::path path_;
    std::filesystem::path beside_;  // empty: there is none
    File file_;                     // the one beside, or the old one
    bool inPlace_ = false;
    std::string contents_;  // what the old one shall hold
};

}  // namespace tavinor
