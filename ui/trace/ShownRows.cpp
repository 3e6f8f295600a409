#include "ui/trace/ShownRows.h"

#include <utility>

namespace tavinor {

bool ShownRows::read(std::uint64_t first, std::uint64_t count, std::int64_t most) {
    cells_.clear();
    std::vector<RowCells> read;
    const auto keep = [&read](const TraceRow& row, const RowTexts* texts) {
        read.push_back(rowCells(row, texts));
    };
    const bool there = reader_.read(first, count, keep, most);
    cells_ = std::move(read);
    first_ = first;
    revision_ = trace_.revision();
    return there;
}

const RowCells& ShownRows::cells(std::uint64_t row) const {
    static const RowCells none;
    return knows(row) ? cells_[row - first_] : none;
}

std::string ShownRows::text(std::uint64_t first, std::uint64_t count) const {
    std::string lines;
    TraceReader(trace_).read(first, count, [&lines](const TraceRow& row, const RowTexts* texts) {
        appendLine(lines, row, texts);
        lines += '\n';
    });
    return lines;
}

}  // namespace tavinor
