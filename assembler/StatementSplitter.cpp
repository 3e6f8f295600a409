#include "assembler/StatementSplitter.h"

#include "assembler/Messages.h"
#include "text/Characters.h"

namespace tavinor {

namespace {

constexpr std::size_t none = std::string_view::npos;

std::string_view errorOf(std::int16_t code) {
    return code == noCode ? message::badOperation : std::string_view{};
}

}  // namespace

SplitErrors StatementSplitter::split(SourceStatement& statement) {
    SplitErrors errors;
    std::string_view text = statement.text;
    // Only the first colon ends a label: a label may hold anything else, blanks and commas included.
    if (const std::size_t colon = text.find(':'); colon != none) {
        statement.label = trimmed(text.substr(0, colon));
        errors.nullLabel = statement.label.empty();
        text = trimmed(text.substr(colon + 1));
    }
    if (text.empty()) return errors;

    const std::size_t blank = text.find(' ');
    if (blank != none) {
        const Parts parts = splitAtBlank(text, blank);
        statement.code = parts.code;
        statement.operand = parts.operand;
        errors.message = errorOf(parts.code);
    } else if (text.find(',') != none) {
        errors.message = message::badSyntax;
    } else {
        statement.code = table_.busca(text);
        errors.message = errorOf(statement.code);
    }
    return errors;
}

StatementSplitter::Parts StatementSplitter::splitAtBlank(std::string_view text, std::size_t blank) {
    compact_ = text;
    removeBlanks(compact_);
    if (const std::int16_t code = table_.busca(compact_); code != noCode) return {code, {}};
    if (text.find(',') != none) return splitWithComma(text, blank);
    return {table_.busca(text.substr(0, blank)), trimmed(text.substr(blank))};
}

StatementSplitter::Parts StatementSplitter::splitWithComma(std::string_view text, std::size_t blank) {
    const std::size_t keyLength = compact_.find(',') + 1;
    const std::string_view key = std::string_view(compact_).substr(0, keyLength);
    if (const std::int16_t code = table_.busca(key); code != noCode) {
        const std::string_view operand = text.substr(text.find(',') + 1);
        if (operand.find(' ') == none) return {code, operand};
        return {code, source_.keep(compact_.substr(keyLength))};
    }
    return {table_.busca(text.substr(0, blank)), text.substr(blank + 1)};
}

}  // namespace tavinor
