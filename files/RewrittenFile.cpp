#include "files/RewrittenFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tavinor {

namespace {

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
bool rewrite(File& file, std::string_view bytes) {
    const std::optional<std::uint64_t> oldSize = file.size();
    if (!oldSize) return false;
    const auto overlap = static_cast<std::size_t>(std::min<std::uint64_t>(*oldSize, bytes.size()));
    const std::optional<std::string> old = beginningOf(file, overlap);
    if (!old) return false;
    const bool written = file.seek(overlap) && file.write(bytes.substr(overlap)) && file.seek(0) &&
                         file.write(bytes.substr(0, overlap)) && file.resize(bytes.size()) && file.flush();
    if (written) return true;
    if (file.seek(0)) file.write(*old);
    file.resize(*oldSize);
    return false;
}

}  // namespace tavinor
