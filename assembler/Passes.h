#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "assembler/ErrorReport.h"
#include "assembler/Evaluation.h"
#include "assembler/OpcodeTable.h"
#include "assembler/PaneText.h"
#include "assembler/SourceText.h"
#include "assembler/SymbolTable.h"
#include "images/HexRecord.h"

namespace tavinor {

/// The three passes over the statements of a source. Each begins an empty listing and reports all its errors;
/// a later pass needs the ones before to be free of errors. @throws Cancelled in each of them
class Passes {
  public:
    Passes(const OpcodeTable& table, SourceText& source, PaneText& listing, PaneText& report,
           WorkObserver& observer)
        : table_(table),
          source_(source),
          listing_(listing),
          observer_(observer),
          errors_(source, listing, report) {}

    /// Pass 1: label, code and operand of every statement.
    bool split();
    /// Pass 2: sizes, addresses and labels.
    bool place();
    /// Pass 3: the bytes, into the listing and into `image`; the symbol table follows, errors or not.
    bool encode(ImageBuffer& image);

  private:
    template <class Work>
    bool pass(Work work);
    void tellProgress(std::size_t i);
    void echo(std::size_t i);

    void setAddress(std::size_t i);
    void setLabel(std::size_t i);
    [[nodiscard]] std::int64_t sizeOf(const SourceStatement& statement) const;
    [[nodiscard]] std::int32_t address(std::size_t i);

    void encodeInstruction(std::size_t i);
    void encodeData(std::size_t i, NumberContext context);
    void encodeOperand(std::size_t i, std::string_view operand, NumberContext context);
    void store(const SourceStatement& statement, ImageBuffer& image) const;
    void list(std::size_t i);
    void listSymbols();

    const OpcodeTable& table_;
    SourceText& source_;
    PaneText& listing_;
    WorkObserver& observer_;
    ErrorReport errors_;
    SymbolTable symbols_;
    std::vector<std::uint8_t> bytes_;  // of one statement, like the next two; here to keep their space
    std::string digits_;
    std::string operand_;
    int passesDone_ = 0;
};

}  // namespace tavinor
