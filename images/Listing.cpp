#include "images/Listing.h"

#include <algorithm>
#include <string_view>

#include "images/Disassembler.h"
#include "machine/HexText.h"
#include "machine/MnemonicTable.h"

namespace tavinor {

namespace {

constexpr std::int32_t bytesBefore = 12;
constexpr std::size_t addressDigits = 4;

int lengthAt(const MachineState& m, std::int32_t address) {
    return instructionLength(m.mem[asIndex(address, memorySize)]);
}

}  // namespace

std::int32_t inidisp(const MachineState& m, std::int32_t cp) {
    const auto leadsHere = [&m, cp](std::int32_t start) {
        std::int32_t address = start;
        while (address < cp) address += lengthAt(m, address);
        return address == cp;
    };
    std::int32_t start = std::max(cp - bytesBefore, 0);
    while (!leadsHere(start)) ++start;
    return start;
}

// Where the listing begins, then what is selected. NOLINTNEXTLINE(bugprone-easily-swappable-parameters)
int Listing::dispmem(std::int32_t cp, std::int32_t sel) {
    rows_.clear();
    int found = noRow;
    std::int32_t address = cp;
    while (static_cast<int>(rows_.size()) < maximumRows && address < memorySize) {
        if (address == sel) found = static_cast<int>(rows_.size());
        Instruction row = linea(machine_, breakpoints_, address);
        rows_.push_back(std::move(row.text));
        address += row.length;
    }
    return found;
}

void Listing::position(std::int32_t address) {
    selected_ = dispmem(inidisp(machine_, address), address);
}

void Listing::rebuildInPlace() {
    const std::int32_t current = addressOrZero(selected_);
    selected_ = dispmem(addressOrZero(0), current);
}

void Listing::rebuildFrom(std::int32_t start) {
    dispmem(start);
    select(0);
}

void Listing::stepBackOneByte() {
    const std::int32_t first = address(0);
    if (first > 0) rebuildFrom(first - 1);
}

void Listing::scrollBack() {
    std::int32_t start = address(0);
    if (start == 0) return;
    do {
        --start;
    } while (start > 0 && lengthAt(machine_, start) != 1);
    rebuildFrom(start);
}

void Listing::scrollForward() {
    const std::int32_t last = address(static_cast<int>(rows_.size()) - 1);
    const std::int32_t next = last + lengthAt(machine_, last);
    if (next >= memorySize) return;
    rows_.push_back(linea(machine_, breakpoints_, next).text);
    rows_.erase(rows_.begin());
}

void Listing::select(int row) {
    selected_ = row >= 0 && row < static_cast<int>(rows_.size()) ? row : noRow;
}

std::int32_t Listing::address(int row) const {
    const std::string& text = rows_[asIndex(row, static_cast<std::int32_t>(rows_.size()))];
    return dec(std::string_view(text).substr(0, addressDigits));
}

std::int32_t Listing::addressOrZero(int row) const {
    return row >= 0 && row < static_cast<int>(rows_.size()) ? address(row) : 0;
}

}  // namespace tavinor
