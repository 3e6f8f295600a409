#include "assembler/OpcodeTable.h"

#include <array>
#include <utility>

namespace tavinor {

namespace {

constexpr std::array<std::pair<std::string_view, DirectiveCode>, 7> directives{{
    {"CPU", directiveCpu},
    {"HOF", directiveHof},
    {"ORG", directiveOrg},
    {"EQU", directiveEqu},
    {"DFB", directiveDfb},
    {"DFW", directiveDfw},
    {"END", directiveEnd},
}};

OpcodeEntry entryOf(std::string_view source) {
    const std::size_t caret = source.find('^');
    const std::size_t brace = source.find('{');
    const std::string_view hexTemplate = source.substr(caret + 1);
    if (brace == std::string_view::npos) return {source.substr(0, caret), {}, hexTemplate};
    return {source.substr(0, brace), source.substr(brace, caret - brace), hexTemplate};
}

}  // namespace

OpcodeTable creatabla(std::span<const std::string_view> sources) {
    OpcodeTable table;
    table.entries_.reserve(sources.size());
    for (const std::string_view source : sources) {
        const OpcodeEntry entry = entryOf(source);
        if (!table.entries_.empty() && table.entries_.back().key > entry.key) ++table.rowsOutOfOrder_;
        table.entries_.push_back(entry);
    }
    return table;
}

std::int16_t OpcodeTable::busca(std::string_view key) const {
    for (const auto& [word, code] : directives) {
        if (key == word) return code;
    }
    std::ptrdiff_t low = -1;
    std::ptrdiff_t high = std::ssize(entries_);
    while (high - low >= 2) {
        const std::ptrdiff_t middle = (low + high) / 2;
        const int order = entries_[static_cast<std::size_t>(middle)].key.compare(key);
        if (order == 0) return static_cast<std::int16_t>(middle);
        (order > 0 ? high : low) = middle;
    }
    return noCode;
}

}  // namespace tavinor
