#include "assembler/SourceText.h"

#include <algorithm>
#include <utility>

#include "text/Characters.h"
#include "text/Lines.h"

namespace tavinor {

namespace {

constexpr char commentMark = ';';
constexpr std::string_view noBreakSpace = "\u00A0";
constexpr std::string_view blankOrTab = " \t";

/// What comes before the comment, without blanks and TABs around it. A ";" inside quotes begins a comment
/// too: there are no quoted texts.
std::string_view statementPart(std::string_view line) {
    line = line.substr(0, line.find(commentMark));
    const std::size_t first = line.find_first_not_of(blankOrTab);
    if (first == std::string_view::npos) return {};
    return line.substr(first, line.find_last_not_of(blankOrTab) - first + 1);
}

/// The line with plain blanks in place of those that look like them, in `space` where there are any.
std::string_view withPlainBlanks(std::string_view line, std::string& space) {
    std::size_t found = line.find(noBreakSpace);
    if (found == std::string_view::npos) return line;
    space.clear();
    for (; found != std::string_view::npos; found = line.find(noBreakSpace)) {
        space.append(line, 0, found);
        space += ' ';
        line.remove_prefix(found + noBreakSpace.size());
    }
    return space += line;
}

}  // namespace

SourceText::SourceText(std::string text, WorkObserver& observer) : text_(std::move(text)) {
    constexpr std::size_t linesBetween = 256;
    readLines(observer);
    observer.report(0);
    cleaned_.reserve(text_.size());
    statements_.reserve(rawLines_.size());
    for (std::size_t line = 0; line < rawLines_.size(); ++line) {
        if (line % linesBetween == 0) observer.report(0);
        const std::string_view cleaned = clean(rawLines_[line]);
        if (cleaned.empty()) continue;
        SourceStatement& statement = statements_.emplace_back();
        statement.text = cleaned;
        statement.line = static_cast<std::int32_t>(line);
    }
    if (statements_.empty()) statements_.emplace_back();
}

void SourceText::readLines(WorkObserver& observer) {
    rawLines_ = splitLines(text_, observer);
    const auto first = std::find_if_not(rawLines_.begin(), rawLines_.end(),
                                        [](std::string_view line) { return line.empty(); });
    rawLines_.erase(rawLines_.begin(), first);
    if (rawLines_.empty()) rawLines_.emplace_back();
}

std::string_view SourceText::clean(std::string_view line) {
    const std::size_t start = cleaned_.size();
    cleaned_ += statementPart(withPlainBlanks(line, plain_));
    for (std::size_t tab = cleaned_.find('\t', start); tab != std::string::npos;
         tab = cleaned_.find('\t', tab)) {
        cleaned_[tab] = ' ';
    }
    upperCase(cleaned_, start);
    return std::string_view(cleaned_).substr(start);
}

}  // namespace tavinor
