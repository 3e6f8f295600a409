#include "trace/TraceText.h"

#include <utility>

#include "machine/Flags.h"
#include "machine/HexText.h"
#include "machine/InstructionText.h"

namespace tavinor {

namespace {

constexpr char separator = '\t';

using FlagTexts = std::array<std::array<char, 5>, 256>;

constexpr FlagTexts makeFlagTexts() {
    FlagTexts texts{};
    for (std::size_t f = 0; f < texts.size(); ++f) texts[f] = flagDigits(static_cast<int>(f));
    return texts;
}

constexpr FlagTexts flagTexts = makeFlagTexts();

/// Writes the cells of one row one after the other. A row without typed texts always fits.
class Line : public ShortText {
  public:
    void separate() { character(separator); }
    /// So many cells without a text.
    void empty(std::size_t cells) {
        for (std::size_t i = 1; i < cells; ++i) separate();
    }

    void instruction(const TraceRow& row);
    void registers(const RegisterImage& r) {
        registers(r, std::make_index_sequence<registerColumns.size()>());
    }

  private:
    template <std::size_t... columns>
    void registers(const RegisterImage& r, std::index_sequence<columns...> all);
    template <std::size_t index>
    void registerCell(const RegisterImage& r);
};

/// DIR, DAT and INS. DAT is as wide as its header, whatever the length.
void Line::instruction(const TraceRow& row) {
    word(row.address);
    separate();
    writeBytes(*this, row.code);
    character(' ');
    separate();
    writeInstruction(*this, row.code);
}

template <std::size_t... columns>
void Line::registers(const RegisterImage& r, std::index_sequence<columns...> /*all*/) {
    (registerCell<columns>(r), ...);
}

template <std::size_t index>
void Line::registerCell(const RegisterImage& r) {
    constexpr RegisterColumn column = registerColumns[index];
    const int value = column.value(r);
    if constexpr (index > 0) separate();
    if constexpr (column.digits == 0) {
        const auto& flags = flagTexts[static_cast<std::size_t>(value)];
        text({flags.data(), flags.size()});
    } else if constexpr (column.digits == 2) {
        byte(value);
    } else {
        word(value);
    }
}

Line plainLine(const TraceRow& row) {
    Line line;
    if (row.hasInstruction) {
        line.instruction(row);
    } else {
        line.empty(firstRegisterColumn);
    }
    line.separate();
    if (row.hasRegisters) {
        line.registers(row.registers);
    } else {
        line.empty(registerColumns.size());
    }
    return line;
}

RowCells split(std::string_view line) {
    RowCells cells;
    for (std::string& cell : cells) {
        const std::size_t end = line.find(separator);
        cell = line.substr(0, end);
        line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    }
    return cells;
}

template <typename Cells>
void appendJoined(std::string& out, const Cells& cells) {
    for (std::size_t column = 0; column < cells.size(); ++column) {
        if (column > 0) out += separator;
        out += cells[column];
    }
}

}  // namespace

RegisterTexts registerTexts(const RegisterImage& r) {
    RegisterTexts texts;
    for (std::size_t box = 0; box < boxColumns.size(); ++box) {
        const RegisterColumn& column = registerColumns[boxColumns[box]];
        texts[box] = hexa(column.value(r), column.digits);
    }
    return texts;
}

RowCells rowCells(const TraceRow& row, const RowTexts* texts) {
    RowCells cells = split(plainLine(row).view());
    if (texts == nullptr) return cells;
    if (texts->address) cells[0] = *texts->address;
    if (texts->registers) {
        for (std::size_t box = 0; box < boxColumns.size(); ++box) {
            cells[firstRegisterColumn + boxColumns[box]] = (*texts->registers)[box];
        }
    }
    return cells;
}

void appendLine(std::string& out, const TraceRow& row, const RowTexts* texts) {
    if (texts == nullptr) {
        out += plainLine(row).view();
    } else {
        appendJoined(out, rowCells(row, texts));
    }
}

void appendHeaderLine(std::string& out) {
    appendJoined(out, traceHeader);
}

}  // namespace tavinor
