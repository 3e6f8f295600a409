#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "trace/TraceRow.h"

/// The rows of the trace as text.
namespace tavinor {

constexpr std::size_t traceColumns = 15;
constexpr std::size_t firstRegisterColumn = 3;

using RowCells = std::array<std::string, traceColumns>;

/// The header cells. Their trailing blanks give the columns their widths.
inline constexpr std::array<std::string_view, traceColumns> traceHeader{
    "DIR ", "DAT      ", "INS         ", "A ", "B ", "C ",   "D ",  "E ",
    "F ",   "szapc",     "H ",           "L ", "M ", "PC  ", "SP  "};

/// The texts that the boxes show for these values.
RegisterTexts registerTexts(const RegisterImage& image);

/// The cells of a row, in UTF-8. `texts` may be null.
RowCells rowCells(const TraceRow& row, const RowTexts* texts);

/// Appends the cells of a row, separated by TABs, without a line end.
void appendLine(std::string& out, const TraceRow& row, const RowTexts* texts);
void appendHeaderLine(std::string& out);

}  // namespace tavinor
