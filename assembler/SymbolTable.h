#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tavinor {

/// A label and its value.
struct SymbolEntry {
    std::string name;  ///< As written, in upper case.
    std::int32_t value = 0;

    friend bool operator==(const SymbolEntry&, const SymbolEntry&) = default;
};

/// The labels in the order of the source, duplicates included; found by name in constant time.
class SymbolTable {
  public:
    SymbolTable() = default;
    SymbolTable(const SymbolTable&) = delete;  // the index points into the rows
    SymbolTable& operator=(const SymbolTable&) = delete;

    /// How many labels have this name already.
    [[nodiscard]] std::size_t count(std::string_view name) const;

    void add(std::string_view name, std::int32_t value);

    /// The value of the first label with this name.
    [[nodiscard]] std::optional<std::int32_t> find(std::string_view name) const;

    /// All labels; one entry without a name when there are none.
    [[nodiscard]] std::vector<SymbolEntry> rows() const;

  private:
    struct Named {
        std::int32_t firstValue;
        std::size_t count;
    };

    std::deque<SymbolEntry> rows_;  // rows keep their place, so names in the index stay valid
    std::unordered_map<std::string_view, Named> byName_;
};

}  // namespace tavinor
