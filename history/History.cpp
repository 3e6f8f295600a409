#include "history/History.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace tavinor {

namespace {

/// A page with more changed cells than this is kept as a whole.
constexpr std::size_t mostCellsOfAPage = 32;

}  // namespace

History::History(const Moment& now, std::size_t mostBytes) : checkpoints_(mostBytes) {
    begin(now);
}

void History::begin(const Moment& now) {
    ++revision_;
    recording_ = false;
    instructions_ = 0;
    changes_.clear();
    cells_.clear();
    pages_.clear();
    checkpoints_.begin(now);
    recording_ = true;
}

std::int64_t History::untilCheckpoint() const {
    return static_cast<std::int64_t>(Checkpoints::densest - instructions_ % Checkpoints::densest);
}

void History::executed(std::int64_t count, const Moment& now) {
    if (!recording_) return;
    instructions_ += static_cast<std::uint64_t>(count);
    if (instructions_ % Checkpoints::densest == 0) keep(end(), now);
}

bool History::changed(const Moment& before, const Moment& now, Kind kind) {
    if (!recording_) return false;
    const std::size_t firstCell = cells_.size();
    const std::size_t firstPage = pages_.size();
    try {
        noteCells(before, now);
        const Change change{.instructions = instructions_,
                            .counters = now.counters,
                            .processor = Processor(now.machine),
                            .kind = kind,
                            .firstCell = static_cast<std::uint32_t>(firstCell),
                            .firstPage = static_cast<std::uint32_t>(firstPage)};
        const bool same = change.processor == Processor(before.machine) && now.counters == before.counters &&
                          cells_.size() == firstCell && pages_.size() == firstPage;
        if (!same) changes_.push_back(change);
        return !same;
    } catch (const std::bad_alloc&) {
        dropCellsFrom(firstCell, firstPage);
        recording_ = false;
        return false;
    }
}

void History::noteCells(const Moment& before, const Moment& now) {
    for (std::uint16_t page = 0; page < cellPages; ++page) {
        const std::uint8_t* was = bytesOf(before.machine, page);
        const std::uint8_t* is = bytesOf(now.machine, page);
        if (std::memcmp(was, is, pageSize) == 0) continue;
        std::size_t different = 0;
        for (std::size_t i = 0; i < pageSize; ++i) different += was[i] != is[i] ? 1U : 0U;
        if (different > mostCellsOfAPage) {
            pages_.push_back({.number = page, .bytes = {}});
            std::copy_n(is, pageSize, pages_.back().bytes.begin());
        } else {
            for (std::size_t i = 0; i < pageSize; ++i) {
                if (was[i] == is[i]) continue;
                const std::size_t address = page == portPage ? i : page * pageSize + i;
                cells_.push_back({static_cast<std::uint16_t>(address), is[i], page == portPage});
            }
        }
    }
}

void History::dropCellsFrom(std::size_t cell, std::size_t page) {
    cells_.erase(cells_.begin() + static_cast<std::ptrdiff_t>(cell), cells_.end());
    pages_.erase(pages_.begin() + static_cast<std::ptrdiff_t>(page), pages_.end());
}

std::size_t History::endOfCells(std::uint64_t index) const {
    return index + 1 < changes_.size() ? changes_[index + 1].firstCell : cells_.size();
}
std::size_t History::endOfPages(std::uint64_t index) const {
    return index + 1 < changes_.size() ? changes_[index + 1].firstPage : pages_.size();
}

void History::apply(std::uint64_t index, Moment& moment) const {
    const Change& change = changes_[index];
    MachineState& m = moment.machine;
    for (std::size_t i = change.firstPage; i < endOfPages(index); ++i) {
        const Page& page = pages_[i];
        std::copy(page.bytes.begin(), page.bytes.end(), bytesOf(m, page.number));
    }
    for (std::size_t i = change.firstCell; i < endOfCells(index); ++i) {
        const Cell& cell = cells_[i];
        (cell.port ? m.port[cell.address] : m.mem[cell.address]) = cell.byte;
    }
    m.synmem();
    change.processor.putInto(m);
    moment.counters = change.counters;
}

void History::cutBehind(const Position& last) {
    if (last == end()) return;
    ++revision_;
    if (last.changes < changes_.size()) {
        dropCellsFrom(changes_[last.changes].firstCell, changes_[last.changes].firstPage);
        changes_.erase(changes_.begin() + static_cast<std::ptrdiff_t>(last.changes), changes_.end());
    }
    instructions_ = last.instructions;
    checkpoints_.cutBehind(last);
}

Position History::beforeNewest() const {
    Position at = end();
    const auto newestIsChange = [&] {
        return at.changes > 0 && changes_[at.changes - 1].instructions == at.instructions;
    };
    if (newestIsChange()) {
        --at.changes;
        if (changes_[at.changes].kind == Kind::outside) return at;
    }
    --at.instructions;
    return at;
}

void History::keep(const Position& at, const Moment& moment) {
    try {
        checkpoints_.add(at, moment);
    } catch (const std::bad_alloc&) {
        // One less: what lies behind it is executed from the one before.
    }
}

std::size_t History::bytesOfChanges() const {
    return changes_.size() * sizeof(Change) + cells_.size() * sizeof(Cell) + pages_.size() * sizeof(Page);
}

}  // namespace tavinor
