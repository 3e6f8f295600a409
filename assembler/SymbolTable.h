#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tavinor {

/// A label and its value.
struct SymbolEntry {
    std::string_view name;  ///< As written, in upper case.
    std::int32_t value = 0;
};

/// The labels in the order of the source, duplicates included; found by name in constant time. A source may
/// have two million: their names stay where they are, in the source, which must live as long.
class SymbolTable {
  public:
    SymbolTable() = default;
    SymbolTable(const SymbolTable&) = delete;  // the index lies in memory of its own
    SymbolTable& operator=(const SymbolTable&) = delete;

    /// Makes room for so many labels, so that the index is not made anew and larger in between.
    void reserve(std::size_t labels);

    /// How many labels have this name already.
    [[nodiscard]] std::size_t count(std::string_view name) const;

    void add(std::string_view name, std::int32_t value);

    /// The value of the first label with this name.
    [[nodiscard]] std::optional<std::int32_t> find(std::string_view name) const;

    [[nodiscard]] const std::vector<SymbolEntry>& rows() const { return rows_; }

  private:
    struct Named {
        std::int32_t firstValue;
        std::uint32_t count;
    };

    std::vector<SymbolEntry> rows_;
    std::pmr::monotonic_buffer_resource memory_;  // of which one need not let go label by label
    std::pmr::unordered_map<std::string_view, Named> byName_{&memory_};
};

}  // namespace tavinor
