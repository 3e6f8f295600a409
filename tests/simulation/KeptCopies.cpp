#include "tests/simulation/KeptCopies.h"

namespace tavinor::test {

std::string KeptCopies::play() {
    if (twins.any(4) == 0) {
        if (std::string text = disturb(); !text.empty()) return text;
    }
    if (twins.any(12) == 0) twins.type();
    if (twins.any(300) == 0) clear();
    return step();
}

void KeptCopies::clear() {
    twins.clearTrace();
    entries.clear();
}

/// What is done without an instruction in between is one group, also where a way back lies in between.
std::string KeptCopies::disturb() {
    Entry entry = remembered();
    const bool goesOn = history().endsGroup(entry.position);
    for (int acts = 1 + twins.any(2); acts > 0; --acts) twins.disturb();
    twins.simulation.settle();
    if (history().end() == entry.position) return twins.differences();
    const std::vector<std::int32_t>& stores = twins.plain.stores;
    if (goesOn) {
        entries.back().stores.insert(entries.back().stores.end(), stores.begin(), stores.end());
    } else {
        entry.stores = stores;
        entries.push_back(std::move(entry));
    }
    return twins.differences();
}

std::string KeptCopies::step() {
    Entry entry = remembered();
    const bool afterGroup = history().endsGroup(entry.position);
    const std::uint64_t revision = history().revision();
    twins.run(1);
    std::string text = twins.differences();
    if (history().revision() != revision) {  // cleared within a HLT
        clear();
        return text;
    }
    const bool stateRow = twins.rows() == entry.rows + 2;
    if (stateRow && afterGroup) ++entry.rows;              // it belongs to the group,
    if (entry.position.instructions == 0) entry.rows = 0;  // but the first one to the first instruction
    entry.stores = twins.plain.stores;
    entries.push_back(std::move(entry));
    return text;
}

KeptCopies::Entry KeptCopies::remembered() {
    twins.simulation.settle();
    twins.plain.stores.clear();
    return {history().end(), twins.plain, twins.rows(), {}};
}

std::string KeptCopies::oneStepBack() {
    if (!twins.simulation.canGoBack()) return "cannot go back";
    if (WayBack(twins.simulation).oneStep() != entries.back().position) return "goes elsewhere";
    return goBackTo(entries.size() - 1);
}

std::string KeptCopies::goBackTo(std::size_t index) {
    const Entry entry = std::move(entries[index]);
    entries.resize(index);
    twins.goBack(entry.position, entry.copy, entry.rows);
    return twins.differences() + twins.rowDifferences(0, twins.rows());
}

}  // namespace tavinor::test
