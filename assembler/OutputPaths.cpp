#include "assembler/OutputPaths.h"

#include <algorithm>
#include <string_view>

namespace tavinor {

namespace {

constexpr std::string_view sourceExtension = "asm";

bool endsInSourceExtension(const std::filesystem::path::string_type& path) {
    if (path.size() < sourceExtension.size()) return false;
    return std::equal(sourceExtension.rbegin(), sourceExtension.rend(), path.rbegin(),
                      [](char letter, auto unit) { return unit == letter || unit == letter - 'a' + 'A'; });
}

}  // namespace

OutputPaths outputPaths(const std::filesystem::path& source) {
    auto stem = source.native();
    if (endsInSourceExtension(stem)) {
        stem.resize(stem.size() - sourceExtension.size());
    } else {
        stem.push_back('.');
    }
    std::filesystem::path hex(stem);
    std::filesystem::path listing(stem);
    hex += "HEX";
    listing += "LST";
    return {hex, listing};
}

}  // namespace tavinor
