#include "ui/trace/TraceStore.h"

#include <algorithm>

namespace tavinor {

bool TraceStore::append(const TraceRow& row, std::unique_ptr<RowTexts> texts) {
    if (!append(row)) return false;
    lastTexts_ = std::move(texts);
    return true;
}

void TraceStore::openBlock() {
    if (!blocks_.empty()) blocks_.back().pack();
    if (memory_() < reserve) throw std::bad_alloc();
    blocks_.emplace_back();
    predictor_.reset();
}

std::size_t TraceStore::heldBytes() const {
    std::size_t bytes = 0;
    for (const TraceBlock& block : blocks_) bytes += block.heldBytes();
    return bytes;
}

void TraceStore::clear() {
    std::vector<TraceBlock>().swap(blocks_);
    lastTexts_.reset();
    size_ = 0;
    skipping_ = 0;
    ++revision_;
}

void TraceStore::read(std::uint64_t first, std::uint64_t count, const Visitor& visitor) const {
    if (first >= size_) return;
    const std::uint64_t end = first + std::min(count, size_ - first);
    const std::uint64_t settled = std::min(end, size_ - 1);
    while (first < settled) {
        const auto start = static_cast<std::uint32_t>(first % TraceBlock::capacity);
        const auto rows = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(settled - first, TraceBlock::capacity - start));
        readBlock(blocks_[first / TraceBlock::capacity], start, start + rows, visitor);
        first += rows;
    }
    if (end == size_) visitor(last_, lastTexts_.get());
}

void TraceStore::readBlock(const TraceBlock& block, std::uint32_t first, std::uint32_t end,
                           const Visitor& visitor) const {
    BlockReader reader(block);
    for (std::uint32_t row = 0; row < end; ++row) {
        const TraceRow values = reader.next();
        if (row >= first) visitor(values, block.texts(row));
    }
}

}  // namespace tavinor
