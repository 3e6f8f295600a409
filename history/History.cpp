#include "history/History.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace tavinor {

namespace {

/// A page with more changed cells than this is kept as a whole.
constexpr std::size_t mostCellsOfAPage = 32;

/// A reset sets the counters to 0; else they only grow.
bool begunAnew(const Counters& before, const Counters& now) {
    return now.instructions < before.instructions || now.tStates < before.tStates;
}

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

bool History::differ(const Moment& before, const Moment& now, const TouchedCells& touched) {
    for (std::uint16_t page = 0; page < cellPages; ++page) {
        if (touched.page(page) &&
            std::memcmp(bytesOf(before.machine, page), bytesOf(now.machine, page), pageSize) != 0) {
            return true;
        }
    }
    return Processor(before.machine) != Processor(now.machine) || before.counters != now.counters ||
           before.shownM != now.shownM;
}

/// Without memory for the way out of a HLT the HLT itself, whose row would show what it had led to, goes too.
void History::changed(const Moment& before, const Moment& now, const TouchedCells& touched, Kind kind) {
    if (!recording_ || !differ(before, now, touched)) return;
    const Kept kept{cells_.size(), pages_.size()};
    try {
        recordChange(before, now, touched, kind);
    } catch (const std::bad_alloc&) {
        keepCells(kept);
        if (kind == Kind::wayOut) cutBehind({instructions_ - 1, changes_.size()});
        recording_ = false;
    }
}

void History::recordChange(const Moment& before, const Moment& now, const TouchedCells& touched, Kind kind) {
    const bool anew = begunAnew(before.counters, now.counters);
    const Counters base = anew ? Counters{} : before.counters;
    const Change change{.instructions = instructions_,
                        .counters = {static_cast<std::int32_t>(now.counters.instructions - base.instructions),
                                     static_cast<std::int32_t>(now.counters.tStates - base.tStates)},
                        .processor = Processor(now.machine),
                        .shownM = now.shownM,
                        .kind = kind,
                        .countersAnew = anew,
                        .firstCell = static_cast<std::uint32_t>(cells_.size()),
                        .firstPage = static_cast<std::uint32_t>(pages_.size())};
    noteCells(now, touched);
    changes_.push_back(change);
}

void History::noteCells(const Moment& now, const TouchedCells& touched) {
    for (std::uint16_t page = 0; page < cellPages; ++page) {
        if (touched.page(page)) noteCellsOf(page, bytesOf(now.machine, page), touched);
    }
}

void History::noteCellsOf(std::uint16_t page, const std::uint8_t* now, const TouchedCells& touched) {
    std::bitset<pageSize> written;
    for (std::size_t i = 0; i < pageSize; ++i) written[i] = touched.cell(page, i);
    if (written.count() > mostCellsOfAPage) {
        pages_.push_back({.number = page, .bytes = {}, .written = written});
        std::copy_n(now, pageSize, pages_.back().bytes.begin());
        return;
    }
    for (std::size_t i = 0; i < pageSize; ++i) {
        if (!written[i]) continue;
        const std::size_t address = page == portPage ? i : page * pageSize + i;
        cells_.push_back({static_cast<std::uint16_t>(address), now[i], page == portPage});
    }
}

void History::keepCells(Kept kept) {
    cells_.erase(cells_.begin() + static_cast<std::ptrdiff_t>(kept.cells), cells_.end());
    pages_.erase(pages_.begin() + static_cast<std::ptrdiff_t>(kept.pages), pages_.end());
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
    if (change.countersAnew) moment.counters = {};
    moment.counters.instructions += change.counters.instructions;
    moment.counters.tStates += change.counters.tStates;
    moment.shownM = change.shownM;
}

void History::cutBehind(const Position& last) {
    if (last == end()) return;
    ++revision_;
    if (last.changes < changes_.size()) {
        keepCells({changes_[last.changes].firstCell, changes_[last.changes].firstPage});
        changes_.erase(changes_.begin() + static_cast<std::ptrdiff_t>(last.changes), changes_.end());
    }
    instructions_ = last.instructions;
    checkpoints_.cutBehind(last);
}

bool History::endsGroup(const Position& at) const {
    return at.changes > 0 && changes_[at.changes - 1].instructions == at.instructions &&
           changes_[at.changes - 1].kind == Kind::outside;
}

Position History::beforeNewest() const {
    const Position at = end();
    const bool newestIsChange = at.changes > 0 && changes_[at.changes - 1].instructions == at.instructions;
    return newestIsChange ? undoneBy(at.changes - 1) : Position{at.instructions - 1, at.changes};
}

Position History::undoneBy(std::uint64_t index) const {
    Position at{changes_[index].instructions, index + 1};
    if (!endsGroup(at)) return {at.instructions - 1, index};
    while (endsGroup(at)) --at.changes;
    return at;
}

std::uint64_t History::changesUpTo(std::uint64_t instructions) const {
    const auto behind = std::partition_point(changes_.begin(), changes_.end(), [&](const Change& change) {
        return change.instructions <= instructions;
    });
    return static_cast<std::uint64_t>(behind - changes_.begin());
}

bool History::wrote(std::uint64_t index, std::int32_t address) const {
    const Change& change = changes_[index];
    const auto first = static_cast<std::ptrdiff_t>(change.firstCell);
    const auto end = static_cast<std::ptrdiff_t>(endOfCells(index));
    if (std::any_of(cells_.begin() + first, cells_.begin() + end,
                    [&](const Cell& cell) { return !cell.port && cell.address == address; })) {
        return true;
    }
    for (std::size_t i = change.firstPage; i < endOfPages(index); ++i) {
        if (pages_[i].number == address / pageSize) {
            return pages_[i].written[static_cast<std::size_t>(address % pageSize)];
        }
    }
    return false;
}

void History::keep(const Position& at, const Moment& moment) const {
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
