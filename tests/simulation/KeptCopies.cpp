#include "tests/simulation/KeptCopies.h"

#include <algorithm>
#include <optional>

namespace tavinor::test {

std::string KeptCopies::play(std::int64_t most) {
    const bool inGroup = history().endsGroup(history().end());  // as after a way back: it may go on
    if (twins.any(inGroup ? 2 : 4) == 0) {
        if (std::string text = disturb(); !text.empty()) return text;
    }
    if (twins.any(12) == 0) twins.type();
    if (twins.any(300) == 0) clear();
    if (twins.any(40) == 0) twins.toggleBreakpoint();
    return step(most);
}

void KeptCopies::clear() {
    twins.clearTrace();
    entries.clear();
    done_.clear();
}

void KeptCopies::note(const Position& before) {
    done_.push_back({before, twins.plain.moment.machine.PC, {}});
}

/// What is done without an instruction in between is one group, also where a way back lies in between.
std::string KeptCopies::disturb() {
    Entry entry = remembered();
    const bool goesOn = history().endsGroup(entry.position);
    if (!goesOn) note(entry.position);
    const std::uint64_t revision = history().revision();
    for (int acts = 1 + twins.any(2); acts > 0; --acts) twins.disturb();
    if (history().revision() != revision) {  // cleared within a HLT that a device brought
        std::string text = twins.differences();
        clear();
        return text;
    }
    if (history().end() == entry.position) {
        if (!goesOn) done_.pop_back();
        return twins.differences();
    }
    const std::vector<std::int32_t>& stores = twins.plain.stores;
    if (goesOn) {
        entries.back().stores.insert(entries.back().stores.end(), stores.begin(), stores.end());
    } else {
        entry.stores = stores;
        entries.push_back(std::move(entry));
    }
    return twins.differences();
}

std::string KeptCopies::step(std::int64_t most) {
    Entry entry = remembered();
    const bool afterGroup = history().endsGroup(entry.position);
    const std::uint64_t revision = history().revision();
    start_ = entry.position;
    twins.run(most);
    std::string text = twins.differences();
    if (history().revision() != revision) {  // cleared within a HLT
        clear();
        return text;
    }
    const std::uint64_t executed = history().end().instructions - start_.instructions;
    const bool stateRow = twins.rows() == entry.rows + executed + 1;
    if (stateRow && afterGroup) ++entry.rows;              // it belongs to the group,
    if (entry.position.instructions == 0) entry.rows = 0;  // but the first one to the first instruction
    entry.stores = twins.plain.stores;
    entries.push_back(std::move(entry));
    return text;
}

KeptCopies::Entry KeptCopies::remembered() {
    const Position end = history().end();
    twins.plain.stores.clear();
    NaiveTrace trace = std::move(twins.plain.trace);  // there is one for all copies
    Entry entry{end, twins.plain, twins.rows(), {}};
    twins.plain.trace = std::move(trace);
    return entry;
}

std::string KeptCopies::oneStepBack() {
    if (!twins.simulation.canGoBack()) return "cannot go back";
    if (WayBack(twins.simulation).oneStep() != done_.back().before) return "goes elsewhere";
    return goBackTo(entries.size() - 1);  // which is farther after a batch
}

std::string KeptCopies::goBackTo(std::size_t index) {
    const Entry entry = std::move(entries[index]);
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(index), entries.end());
    while (!done_.empty() && done_.back().before >= entry.position) done_.pop_back();
    twins.goBack(entry.position, entry.copy, entry.rows);
    return twins.differences() + twins.rowDifferences(0, twins.rows());
}

template <typename Fits>
const KeptCopies::Done* KeptCopies::latest(const Fits& fits) const {
    const auto found = std::find_if(done_.rbegin(), done_.rend(), fits);
    return found == done_.rend() ? nullptr : &*found;
}

/// To the copy at `position`, or to the one before it where that lies within a batch.
std::string KeptCopies::goBackTo(const Position& position) {
    std::size_t index = entries.size() - 1;
    while (entries[index].position > position) --index;
    return goBackTo(index);
}

const KeptCopies::Done& KeptCopies::anyDone() {
    return done_[static_cast<std::size_t>(twins.any(static_cast<std::uint32_t>(done_.size())))];
}

std::string KeptCopies::backToBreakpoint() {
    const std::int32_t place = anyDone().PC;
    twins.simulation.toggleBreakpoint(place);
    const Done* expected = latest([this](const Done& done) {
        return twins.simulation.breakpoints()[static_cast<std::size_t>(done.PC)] != 0;
    });
    const Position target = expected != nullptr ? expected->before : Position{};
    WorkObserver unobserved;
    if (!twins.simulation.canGoBack()) return "cannot go back";
    if (WayBack(twins.simulation).toBreakpoint(unobserved) != target) return "finds another breakpoint";
    return goBackTo(target);
}

std::string KeptCopies::backToLastWrite() {
    const std::vector<std::int32_t>& stores = (twins.any(2) == 0 ? done_.back() : anyDone()).stores;
    const std::int32_t address = stores.empty() ? twins.any(memorySize) : stores.back();
    const Done* expected = latest([address](const Done& done) {
        return std::find(done.stores.begin(), done.stores.end(), address) != done.stores.end();
    });
    WorkObserver unobserved;
    if (!twins.simulation.canGoBack()) return "cannot go back";
    const std::optional<Position> found = WayBack(twins.simulation).toLastWrite(address, unobserved);
    if (found.has_value() != (expected != nullptr)) return expected != nullptr ? "finds nothing" : "finds it";
    if (!found) return {};
    if (*found != expected->before) return "finds another write";
    return goBackTo(*found);
}

}  // namespace tavinor::test
