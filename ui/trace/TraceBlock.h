#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "ui/trace/RowPredictor.h"
#include "ui/trace/TraceRow.h"

namespace tavinor {

/// A fixed number of rows that follow each other, in few bytes.
///
/// A row is nearly always what its instruction makes of the row before, so only the rows that are not are
/// kept: a `RowPredictor` executes the program once more, beside the recording and again when the rows are
/// read, and each row that it did not predict is one record:
///
///     rows predicted since the record before   2 bytes, lowest first
///     deviations                               2 bytes: a bit for each part that follows
///     address                                  2 bytes, if it deviates
///     instruction                              3 bytes, if it deviates
///     M                                        1 byte, if it deviates
///     each of AF BC DE HL PC SP                2 bytes, if it deviates
///
/// Rows after the last record were all predicted. Each block begins with an empty predictor, so that it can
/// be read by itself: a loop costs some records at its first turn and nothing at its next thousands. The
/// texts of boxes that were being typed in lie beside the records. A full block is packed with zstd.
class TraceBlock {
  public:
    static constexpr std::uint32_t capacity = 65536;

    [[nodiscard]] std::uint32_t rows() const { return rows_; }
    [[nodiscard]] bool full() const { return rows_ == capacity; }

    /// Adds a row, which `predictor` follows. @throws std::bad_alloc; then nothing has changed.
    void append(RowPredictor& predictor, const TraceRow& row, const RowTexts* texts) {
        // Everything that can fail comes first: a predictor that has moved on cannot go back.
        if (records_.capacity() - records_.size() < longestRecord) makeRoom();
        if (texts != nullptr) typedRows_.push_back({rows_, *texts});
        const unsigned deviations = predictor.follow(row);
        ++rows_;
        if (deviations == 0) {
            ++predicted_;
        } else {
            record(row, deviations);
        }
    }

    /// Packs the records of a block that is full. Where there is no memory for it, they stay as they are.
    void pack() noexcept;

    /// The memory that the rows take, typed texts apart.
    [[nodiscard]] std::size_t heldBytes() const { return sizeof *this + records_.capacity(); }

    /// The texts of a row, or null.
    [[nodiscard]] const RowTexts* texts(std::uint32_t row) const;

  private:
    friend class BlockReader;

    static constexpr std::size_t longestRecord = 2 + 2 + 2 + 3 + 1 + 6 * 2;

    struct TypedRow {
        std::uint32_t row;
        RowTexts texts;
    };

    void makeRoom();
    void put(unsigned value, int bytes);
    void record(const TraceRow& row, unsigned deviations);
    [[nodiscard]] std::vector<std::uint8_t> unpackedRecords() const;

    std::vector<std::uint8_t> records_;
    std::vector<TypedRow> typedRows_;
    std::uint32_t rows_ = 0;
    std::uint32_t predicted_ = 0;     // rows since the last record
    std::uint32_t unpackedSize_ = 0;  // 0: the records are not packed
};

/// Reads the rows of a block from its first one. The block must not change meanwhile.
class BlockReader {
  public:
    explicit BlockReader(const TraceBlock& block);

    TraceRow next();

  private:
    unsigned get(int bytes);
    void startRecord();
    TraceRow unpredictedRow();

    std::vector<std::uint8_t> records_;
    std::size_t position_ = 0;
    RowPredictor predictor_;
    std::uint32_t predictedLeft_ = 0;
    unsigned deviations_ = 0;  // of the row after the predicted ones; 0: there is none
};

}  // namespace tavinor
