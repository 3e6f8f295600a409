#include "ui/trace/TraceBlock.h"

#include <zstd.h>

#include <algorithm>
#include <new>

namespace tavinor {

namespace {

constexpr std::size_t firstRoom = 64;

}  // namespace

void TraceBlock::makeRoom() {
    records_.reserve(std::max(2 * records_.capacity(), firstRoom));
}

void TraceBlock::put(unsigned value, int bytes) {
    for (int i = 0; i < bytes; ++i) records_.push_back(static_cast<std::uint8_t>(value >> (8 * i) & 255));
}

void TraceBlock::record(const TraceRow& row, unsigned deviations) {
    put(predicted_, 2);
    put(deviations, 2);
    if ((deviations & deviation::address) != 0) put(row.address, 2);
    if ((deviations & deviation::code) != 0) put(row.code, 3);
    if ((deviations & deviation::M) != 0) put(row.registers.M(), 1);
    for (unsigned i = 0; i < RegisterImage::words; ++i) {
        if ((deviations & deviation::word(i)) != 0) put(row.registers.word(i), 2);
    }
    predicted_ = 0;
}

void TraceBlock::pack() noexcept {
    if (unpackedSize_ != 0) return;
    try {
        std::vector<std::uint8_t> room(ZSTD_compressBound(records_.size()));
        const std::size_t packed =
            ZSTD_compress(room.data(), room.size(), records_.data(), records_.size(), 1);
        if (ZSTD_isError(packed) == 0 && packed < records_.size()) {
            std::vector<std::uint8_t> result(room.begin(),
                                             room.begin() + static_cast<std::ptrdiff_t>(packed));
            unpackedSize_ = static_cast<std::uint32_t>(records_.size());
            records_.swap(result);
        } else {
            records_.shrink_to_fit();
        }
        typedRows_.shrink_to_fit();
    } catch (const std::bad_alloc&) {
        // The records are whole, only larger.
    }
}

std::vector<std::uint8_t> TraceBlock::unpackedRecords() const {
    if (unpackedSize_ == 0) return records_;
    std::vector<std::uint8_t> result(unpackedSize_);
    ZSTD_decompress(result.data(), result.size(), records_.data(), records_.size());
    return result;
}

const RowTexts* TraceBlock::texts(std::uint32_t row) const {
    const auto place = std::lower_bound(typedRows_.begin(), typedRows_.end(), row,
                                        [](const TypedRow& typed, std::uint32_t r) { return typed.row < r; });
    return place != typedRows_.end() && place->row == row ? &place->texts : nullptr;
}

BlockReader::BlockReader(const TraceBlock& block) : records_(block.unpackedRecords()) {
    startRecord();
}

unsigned BlockReader::get(int bytes) {
    unsigned value = 0;
    for (int i = 0; i < bytes; ++i) value |= static_cast<unsigned>(records_[position_++]) << (8 * i);
    return value;
}

void BlockReader::startRecord() {
    deviations_ = 0;
    if (position_ == records_.size()) return;
    predictedLeft_ = get(2);
    deviations_ = get(2);
}

TraceRow BlockReader::next() {
    if (deviations_ == 0) return predictor_.predict();
    if (predictedLeft_ > 0) {
        --predictedLeft_;
        return predictor_.predict();
    }
    const TraceRow row = unpredictedRow();
    startRecord();
    return row;
}

TraceRow BlockReader::unpredictedRow() {
    TraceRow row;
    row.hasInstruction = (deviations_ & deviation::state) == 0;
    row.hasRegisters = (deviations_ & deviation::noRegisters) == 0;
    if (row.hasInstruction) {
        if ((deviations_ & deviation::address) != 0) {
            predictor_.setAddress(static_cast<std::uint16_t>(get(2)));
        }
        row.address = predictor_.address();
        if ((deviations_ & deviation::code) != 0) predictor_.setCode(get(3));
        row.code = predictor_.code();
        if (!row.hasRegisters) return row;
        predictor_.execute();
    }
    const RegisterImage expected = predictor_.registers();
    row.registers = expected;
    if ((deviations_ & deviation::M) != 0) row.registers.setM(static_cast<std::uint8_t>(get(1)));
    for (unsigned i = 0; i < RegisterImage::words; ++i) {
        if ((deviations_ & deviation::word(i)) == 0) continue;
        row.registers.setWord(i, static_cast<std::uint16_t>(get(2)));
    }
    if (row.registers != expected) predictor_.adopt(row);
    return row;
}

}  // namespace tavinor
