#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace tavinor::monkey {

/// Random choices, the same for the same seed with every library.
class Chance {
  public:
    explicit Chance(std::uint64_t seed) : numbers_(seed) {}

    /// 0 to `limit` - 1; 0 for a limit below 1.
    int below(int limit) {
        return limit < 1 ? 0 : static_cast<int>(numbers_() % static_cast<std::uint64_t>(limit));
    }
    int between(int least, int most) { return least + below(most - least + 1); }
    bool oneIn(int count) { return below(count) == 0; }

    template <typename List>
    decltype(auto) oneOf(const List& list) {
        return *std::next(std::begin(list), below(static_cast<int>(std::size(list))));
    }

    /// One entry of a table, by the `weight` of each.
    template <typename Table>
    decltype(auto) byWeight(const Table& table) {
        int sum = 0;
        for (const auto& entry : table) sum += entry.weight;
        int left = below(sum);
        auto entry = std::begin(table);
        while (left >= entry->weight) {
            left -= entry->weight;
            ++entry;
        }
        return *entry;
    }

  private:
    std::mt19937_64 numbers_;
};

}  // namespace tavinor::monkey
