#include "files/RewrittenFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tavinor {

namespace {

/// What is brought to the disk at a time.
constexpr std::size_t portionSize = std::size_t{1024} * 1024;

/// The first `size` bytes of a file, or nothing when they cannot be read.
std::optional<std::string> beginningOf(File& file, std::size_t size) {
    std::string bytes(size, '\0');
    if (!file.seek(0)) return std::nullopt;
    for (std::size_t got = 0; got < size;) {
        const std::optional<std::size_t> count = file.read(std::span(bytes).subspan(got));
        if (!count || *count == 0) return std::nullopt;
        got += *count;
    }
    return bytes;
}

}  // namespace

/// What goes beyond the old end is written first: on a full disk that fails, and no old byte has gone yet.
bool rewrite(File& file, std::string_view bytes, WorkObserver& observer) {
    const std::optional<std::uint64_t> oldSize = file.size();
    if (!oldSize) return false;
    const auto overlap = static_cast<std::size_t>(std::min<std::uint64_t>(*oldSize, bytes.size()));
    const std::optional<std::string> old = beginningOf(file, overlap);
    if (!old) return false;
    std::size_t done = 0;
    bool goesOn = true;
    const auto put = [&](std::size_t begin, std::size_t end) {
        bool good = file.seek(begin);
        for (std::size_t at = begin; good && at < end; at += portionSize) {
            const std::string_view portion = bytes.substr(at, std::min(portionSize, end - at));
            done += portion.size();
            good = file.write(portion) && file.flush();
            goesOn = observer.goesOn(static_cast<double>(done) / static_cast<double>(bytes.size()));
            good = good && goesOn;
        }
        return good;
    };
    const bool all = put(overlap, bytes.size()) && put(0, overlap);
    if (all && file.resize(bytes.size()) && file.flush()) return true;
    if (file.seek(0)) file.write(*old);
    file.resize(*oldSize);
    if (!goesOn) throw Cancelled{};
    return false;
}

}  // namespace tavinor
