#include "assembler/ErrorReport.h"

#include "assembler/Messages.h"
#include "machine/HexText.h"

namespace tavinor {

void ErrorReport::msgerr(std::size_t i, std::string_view message) {
    if (count_ == maximumErrors) {
        errorLine(listing_, message::tooManyErrors);
        errorLine(report_, message::tooManyErrors);
        throw TooManyErrors{};
    }
    ++count_;
    const SourceStatement& statement = source_.statements()[i];
    errorLine(listing_, message);
    report_.line("==>", source_.rawLine(statement));
    report_.line("Línea: ", ls(statement.line + 1), " - ERROR: ", message);
}

void errorLine(PaneText& pane, std::string_view message) {
    pane.line("==> ERROR: ", message);
}

}  // namespace tavinor
