#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "trace/TraceRow.h"

/// The rows of the trace as text.
namespace tavinor {

constexpr std::size_t firstRegisterColumn = 3;
constexpr std::size_t traceColumns = firstRegisterColumn + registerColumns.size();

using RowCells = std::array<std::string, traceColumns>;

/// The header cells. Their trailing blanks give the columns their widths.
inline constexpr auto traceHeader = [] {
    std::array<std::string_view, traceColumns> header{"DIR ", "DAT      ", "INS         "};
    for (std::size_t i = 0; i < registerColumns.size(); ++i) {
        header[firstRegisterColumn + i] = registerColumns[i].header;
    }
    return header;
}();

/// The texts that the boxes show for these values.
RegisterTexts registerTexts(const RegisterImage& image);

/// The cells of a row, in UTF-8. `texts` may be null.
RowCells rowCells(const TraceRow& row, const RowTexts* texts);

/// Appends the cells of a row, separated by TABs, without a line end.
void appendLine(std::string& out, const TraceRow& row, const RowTexts* texts);
void appendHeaderLine(std::string& out);

}  // namespace tavinor
