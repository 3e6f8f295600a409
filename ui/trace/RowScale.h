#pragma once

#include <algorithm>
#include <cstdint>

/// Where rows are, and moving among them. A scroll bar counts in `int`, rows in 64 bits. As long as the rows
/// fit, one step of the bar is one row; beyond that the bar is a scale.
namespace tavinor::rowscale {

constexpr std::uint64_t longestBar = 1'000'000'000;

/// The greatest value of a bar for first rows 0 to `lastFirst`.
constexpr int barMaximum(std::uint64_t lastFirst) {
    return static_cast<int>(std::min(lastFirst, longestBar));
}

constexpr int barValue(std::uint64_t first, std::uint64_t lastFirst) {
    if (lastFirst <= longestBar) return static_cast<int>(first);
    return static_cast<int>(static_cast<double>(first) / static_cast<double>(lastFirst) *
                            static_cast<double>(longestBar));
}

constexpr std::uint64_t firstRow(int value, std::uint64_t lastFirst) {
    const auto position = static_cast<std::uint64_t>(value);
    if (lastFirst <= longestBar) return std::min(position, lastFirst);
    if (position == longestBar) return lastFirst;
    return static_cast<std::uint64_t>(static_cast<double>(value) / static_cast<double>(longestBar) *
                                      static_cast<double>(lastFirst));
}

/// `from` moved by `rows`, no further than the first and the last row.
constexpr std::uint64_t movedRow(std::uint64_t from, std::int64_t rows, std::uint64_t last) {
    const auto distance = static_cast<std::uint64_t>(rows < 0 ? -rows : rows);
    if (rows < 0) return from > distance ? from - distance : 0;
    return last - std::min(from, last) > distance ? from + distance : last;
}

}  // namespace tavinor::rowscale
