#include "assembler/SymbolTable.h"

namespace tavinor {

std::size_t SymbolTable::count(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? 0 : found->second.count;
}

void SymbolTable::add(std::string_view name, std::int32_t value) {
    const SymbolEntry& row = rows_.emplace_back(SymbolEntry{std::string(name), value});
    ++byName_.try_emplace(row.name, Named{value, 0}).first->second.count;
}

std::optional<std::int32_t> SymbolTable::find(std::string_view name) const {
    const auto found = byName_.find(name);
    if (found == byName_.end()) return std::nullopt;
    return found->second.firstValue;
}

std::vector<SymbolEntry> SymbolTable::rows() const {
    if (rows_.empty()) return {SymbolEntry{}};
    return {rows_.begin(), rows_.end()};
}

}  // namespace tavinor
