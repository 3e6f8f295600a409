#include "files/ReplacedFile.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <system_error>

#include "files/RewrittenFile.h"

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
    if (!fs::exists(fs::status(path_, error))) {
        const fs::file_status like = fs::status(model, error);
        const bool modelled = fs::exists(like);
        if (createBeside(modelled) && modelled) fs::permissions(beside_, like.permissions(), error);
        return;
    }
    const File old = File::forChanging(path_);
    if (!old.isOpen()) return;
    const bool replaceable = fs::hard_link_count(path_, error) == 1 && createBeside(true);
    if (replaceable && file_.takeAfter(old)) return;
    removeBeside();
    file_ = File::forRewriting(path_);
    inPlace_ = true;
}

/// Nothing of the old file may be seen by others before it has the old permissions.
bool ReplacedFile::createBeside(bool secret) {
    constexpr int mostTries = 100;
    std::random_device random;
    for (int tries = 0; tries < mostTries; ++tries) {
        beside_ = path_.parent_path() / (".tavinor-" + std::to_string(random()));
        std::error_code error;
        if (fs::exists(fs::symlink_status(beside_, error))) continue;
        file_ = File::createNew(beside_, secret);
        break;
    }
    if (!file_.isOpen()) beside_.clear();
    return file_.isOpen();
}

bool ReplacedFile::write(std::string_view bytes) {
    if (!inPlace_) return file_.write(bytes);
    contents_ += bytes;
    return file_.isOpen();
}

bool ReplacedFile::commit() {
    WorkObserver patient;
    return commit(patient);
}

bool ReplacedFile::commit(WorkObserver& observer) {
    if (inPlace_) return rewrite(file_, contents_, observer) && file_.close();
    const bool safe = file_.flush();
    if (!file_.close() || !safe) return false;
    std::error_code error;
    fs::rename(beside_, path_, error);
    if (error) return rewriteOld(observer);
    beside_.clear();
    return true;
}

/// Not every name can be given another file: that of a mount point cannot.
bool ReplacedFile::rewriteOld(WorkObserver& observer) {
    constexpr auto unlimited = std::numeric_limits<std::uint64_t>::max();
    const std::optional<std::string> bytes = readWholeFile(beside_, unlimited);
    file_ = File::forRewriting(path_);
    return bytes && file_.isOpen() && rewrite(file_, *bytes, observer) && file_.close();
}

void ReplacedFile::removeBeside() {
    file_.close();
    std::error_code ignored;
    if (!beside_.empty()) fs::remove(beside_, ignored);
    beside_.clear();
}

ReplacedFile::~ReplacedFile() {
    removeBeside();
}

}  // namespace tavinor
