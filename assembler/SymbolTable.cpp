#include "assembler/SymbolTable.h"

namespace tavinor {

std::size_t SymbolTable::count(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? 0 : found->second.count;
}

void SymbolTable::reserve(std::size_t labels) {
    rows_.reserve(labels);
    byName_.reserve(labels);
}

void SymbolTable::add(std::string_view name, std::int32_t value) {
    rows_.push_back({name, value});
    ++byName_.try_emplace(name, Named{value, 0}).first->second.count;
}

std::optional<std::int32_t> SymbolTable::find(std::string_view name) const {
    const auto found = byName_.find(name);
    if (found == byName_.end()) return std::nullopt;
    return found->second.firstValue;
}

}  // namespace tavinor
