#include "assembler/ErrorReport.h"

#include <string>

#include "assembler/Messages.h"
#include "machine/HexText.h"

namespace tavinor {

namespace {

constexpr std::string_view lineMark = "==>";

}  // namespace

void ErrorReport::msgerr(std::size_t i, std::string_view message) {
    any_ = true;
    const SourceStatement& statement = source_.statements()[i];
    const std::string_view rawLine = source_.rawLine(statement);
    const std::string place = "Línea: " + ls(statement.line + 1) + " - ERROR: ";
    const std::size_t size =
        lineMark.size() + rawLine.size() + place.size() + message.size() + 2 * lineEnd.size();
    if (count_ == maximumErrors || size > maximumBytes - bytes_) {
        errorLine(listing_, message::tooManyErrors);
        errorLine(report_, message::tooManyErrors);
        throw TooManyErrors{};
    }
    ++count_;
    bytes_ += size;
    errorLine(listing_, message);
    report_.line(lineMark, rawLine);
    report_.line(place, message);
}

void errorLine(PaneText& pane, std::string_view message) {
    pane.line("==> ERROR: ", message);
}

}  // namespace tavinor
