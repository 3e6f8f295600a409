#include "assembler/Passes.h"

#include <algorithm>
#include <limits>

#include "assembler/Evaluation.h"
#include "assembler/ListingWriter.h"
#include "assembler/Messages.h"
#include "assembler/StatementSplitter.h"
#include "machine/HexText.h"
#include "text/Characters.h"

namespace tavinor {

namespace {

std::int32_t clamped(std::int64_t value) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(value, std::numeric_limits<std::int32_t>::max()));
}

/// The raw lines between the statement before `i` and that of `i`; none before the first statement.
std::pair<std::size_t, std::size_t> linesBefore(const std::vector<SourceStatement>& statements,
                                                std::size_t i) {
    const auto own = static_cast<std::size_t>(statements[i].line);
    return {i == 0 ? own : static_cast<std::size_t>(statements[i - 1].line) + 1, own};
}

}  // namespace

template <class Work>
bool Passes::pass(Work work) {
    constexpr std::size_t statementsBetween = 256;
    listing_.clear();
    try {
        for (std::size_t i = 0; i < source_.statements().size(); ++i) {
            if (i % statementsBetween == 0) tellProgress(i);
            work(i);
        }
    } catch (const TooManyErrors&) {
        // Reported; the pass ends here.
    }
    ++passesDone_;
    return !errors_.any();
}

void Passes::tellProgress(std::size_t i) {
    constexpr int passes = 3;
    const double ofPass = static_cast<double>(i) / static_cast<double>(source_.statements().size());
    observer_.report((passesDone_ + ofPass) / passes);
}

void Passes::echo(std::size_t i) {
    const auto [first, own] = linesBefore(source_.statements(), i);
    for (std::size_t line = first; line <= own; ++line) listing_.line(source_.rawLines()[line]);
}

bool Passes::split() {
    StatementSplitter splitter(table_, source_);
    return pass([&](std::size_t i) {
        echo(i);
        const SplitErrors errors = splitter.split(source_.statements()[i]);
        if (errors.nullLabel) errors_.msgerr(i, message::nullLabel);
        if (!errors.message.empty()) errors_.msgerr(i, errors.message);
    });
}

bool Passes::place() {
    const auto& statements = source_.statements();
    symbols_.reserve(static_cast<std::size_t>(
        std::count_if(statements.begin(), statements.end(),
                      [](const SourceStatement& statement) { return !statement.label.empty(); })));
    return pass([&](std::size_t i) {
        echo(i);
        setAddress(i);
        setLabel(i);
        const SourceStatement& statement = source_.statements()[i];
        const std::int64_t end = std::int64_t{statement.address} + statement.size;
        if (statement.size > 0 && end > static_cast<std::int64_t>(imageSize)) {
            errors_.msgerr(i, message::addressOutsideMemory);
        }
    });
}

void Passes::setAddress(std::size_t i) {
    SourceStatement& statement = source_.statements()[i];
    statement.size = clamped(sizeOf(statement));
    if (i > 0) {
        const SourceStatement& previous = source_.statements()[i - 1];
        statement.address = clamped(std::int64_t{previous.address} + previous.size);
    }
    if (statement.code == directiveOrg) statement.address = address(i);
}

std::int64_t Passes::sizeOf(const SourceStatement& statement) const {
    if (statement.code >= 0) return static_cast<std::int64_t>(table_.row(statement.code).size());
    if (statement.code != directiveDfb && statement.code != directiveDfw) return 0;
    // Every comma counts, those of the label included, although they separate nothing: see behaviour.md,
    // Assembler: directives and code.
    const std::int64_t items = 1 + std::count(statement.text.begin(), statement.text.end(), ',');
    return statement.code == directiveDfb ? items : 2 * items;
}

/// The operand of ORG and EQU: numbers alone, because labels are not complete yet.
std::int32_t Passes::address(std::size_t i) {
    const std::int32_t value = cmpnum(source_.statements()[i].operand, NumberContext::word);
    if (value < 0) errors_.msgerr(i, message::badAddress);
    return value;
}

void Passes::setLabel(std::size_t i) {
    const SourceStatement& statement = source_.statements()[i];
    if (statement.label.empty()) return;
    const std::size_t earlier = symbols_.count(statement.label);
    for (std::size_t n = 0; n < earlier; ++n) errors_.msgerr(i, message::duplicateLabel);
    symbols_.add(statement.label, statement.code == directiveEqu ? address(i) : statement.address);
}

bool Passes::encode(ImageBuffer& image) {
    const bool good = pass([&](std::size_t i) {
        const SourceStatement& statement = source_.statements()[i];
        bytes_.clear();
        if (statement.code >= 0) encodeInstruction(i);
        if (statement.code == directiveDfb) encodeData(i, NumberContext::byte);
        if (statement.code == directiveDfw) encodeData(i, NumberContext::word);
        store(statement, image);
        list(i);
    });
    listSymbols();
    return good;
}

/// There is one line at least.
void Passes::listSymbols() {
    constexpr std::size_t symbolsBetween = 4096;
    listSymbolHeader(listing_);
    if (symbols_.rows().empty()) listSymbol(listing_, {});
    for (std::size_t i = 0; i < symbols_.rows().size(); ++i) {
        if (i % symbolsBetween == 0) observer_.report(1);
        listSymbol(listing_, symbols_.rows()[i]);
    }
}

void Passes::encodeInstruction(std::size_t i) {
    const SourceStatement& statement = source_.statements()[i];
    const OpcodeEntry& entry = table_.row(statement.code);
    bytes_.push_back(static_cast<std::uint8_t>(hextodec(entry.opcode())));
    // The operand of a one-byte instruction is not looked at: see behaviour.md, Assembler: lines.
    if (statement.size == 2) encodeOperand(i, statement.operand, NumberContext::byte);
    if (statement.size == 3) encodeOperand(i, statement.operand, NumberContext::word);
}

/// A source may be a single statement of millions of items.
void Passes::encodeData(std::size_t i, NumberContext context) {
    constexpr std::size_t bytesBetween = 4096;
    std::string_view rest = source_.statements()[i].operand;
    for (std::size_t comma = rest.find(','); comma != std::string_view::npos; comma = rest.find(',')) {
        if (bytes_.size() % bytesBetween == 0) tellProgress(i);
        encodeOperand(i, rest.substr(0, comma), context);
        rest.remove_prefix(comma + 1);
    }
    encodeOperand(i, rest, context);
}

void Passes::encodeOperand(std::size_t i, std::string_view operand, NumberContext context) {
    operand_ = operand;
    const std::int32_t value = sacaoperando(operand_, context, symbols_);
    if (value < 0) errors_.msgerr(i, message::badOperand);
    bytes_.push_back(static_cast<std::uint8_t>(static_cast<std::uint32_t>(value)));
    // What failed is listed too, with nothing in its high byte: see behaviour.md, Assembler: directives and
    // code.
    if (context == NumberContext::word) bytes_.push_back(static_cast<std::uint8_t>(std::max(value, 0) / 256));
}

/// A later statement at the same address silently wins. Commas in a label may have made the size larger than
/// the bytes; the missing ones are 00.
void Passes::store(const SourceStatement& statement, ImageBuffer& image) const {
    const auto start = static_cast<std::size_t>(statement.address);
    for (std::size_t b = 0; b < static_cast<std::size_t>(statement.size); ++b) {
        image[start + b] = b < bytes_.size() ? bytes_[b] : std::uint8_t{0};
    }
}

void Passes::list(std::size_t i) {
    const auto [first, own] = linesBefore(source_.statements(), i);
    for (std::size_t line = first; line < own; ++line) listRawLine(listing_, source_.rawLines()[line]);
    digits_.clear();
    for (const std::uint8_t byte : bytes_) digits_ += hexa(std::int32_t{byte}, 2);
    listStatement(listing_, source_.statements()[i].address, digits_, source_.rawLines()[own]);
}

}  // namespace tavinor
