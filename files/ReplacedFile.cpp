#include "files/ReplacedFile.h"

#include <optional>
#include <random>
#include <string>
#include <system_error>

namespace tavinor {

namespace {

namespace fs = std::filesystem;

/// The name at the end of a chain of symbolic links, be there a file of that name or not. Nothing where they
/// lead in a circle.
std::optional<fs::path> behindLinks(fs::path path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int links = 0; links <= mostLinks; ++links) {
        if (!fs::is_symlink(fs::symlink_status(path, error))) return path;
        const fs::path target = fs::read_symlink(path, error);
        if (error) return std::nullopt;
        path = path.parent_path() / target;
    }
    return std::nullopt;
}

}  // namespace

ReplacedFile::ReplacedFile(const fs::path& path, const fs::path& model) {
    const std::optional<fs::path> target = behindLinks(path);
    if (!target) return;
    path_ = *target;
    std::error_code error;
    const bool replaces = fs::exists(fs::status(path_, error));
    if (replaces && !File::forChanging(path_).isOpen()) return;
    const fs::file_status like = fs::status(replaces ? path_ : model, error);
    if (fs::exists(like)) permissions_ = like.permissions();
    if (createBeside() && permissions_ != fs::perms::unknown) {
        fs::permissions(beside_, permissions_, error);
    }
}

/// Nothing of the old file may be seen by others before it has the old permissions.
bool ReplacedFile::createBeside() {
    constexpr int mostTries = 100;
    std::random_device random;
    for (int tries = 0; tries < mostTries; ++tries) {
        const fs::path name = path_.parent_path() / (".tavinor-" + std::to_string(random()));
        std::error_code error;
        if (fs::exists(fs::symlink_status(name, error))) continue;
        file_ = File::createNew(name, permissions_ != fs::perms::unknown);
        if (file_.isOpen()) beside_ = name;
        break;
    }
    return file_.isOpen();
}

bool ReplacedFile::commit() {
    const bool safe = file_.flush();
    if (!file_.close() || !safe) return false;
    std::error_code error;
    fs::rename(beside_, path_, error);
    if (error) return false;
    beside_.clear();
    return true;
}

ReplacedFile::~ReplacedFile() {
    file_.close();
    std::error_code ignored;
    if (!beside_.empty()) fs::remove(beside_, ignored);
}

}  // namespace tavinor
