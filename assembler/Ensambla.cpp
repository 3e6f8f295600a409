#include "assembler/Ensambla.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <system_error>
#include <utility>

#include "assembler/HexWriter.h"
#include "assembler/Messages.h"
#include "assembler/OpcodeTable.h"
#include "assembler/PaneText.h"
#include "assembler/Passes.h"
#include "assembler/SourceText.h"
#include "files/File.h"
#include "text/Lines.h"

namespace tavinor {

namespace {

/// The two panes and the result of one run.
class Run {
  public:
    explicit Run(AssemblyObserver& observer)
        : observer_(observer), listing_(Pane::listing, observer), report_(Pane::report, observer) {
        result_.image.fill(noByte);
    }

    void fail(std::string_view message) {
        errorLine(listing_, message);
        errorLine(report_, message);
    }

    void assemble(std::string bytes, std::span<const std::string_view> opcodes) {
        try {
            pass(std::move(bytes), opcodes);
            listing_.flush();
            report_.flush();
            if (!observer_.passesOver()) throw Cancelled{};
        } catch (const Cancelled&) {
            result_.cancelled = true;
            result_.assembled = false;
        }
        if (!result_.assembled) result_.image.fill(noByte);
    }

    void writeHex(const std::filesystem::path& path) {
        if (result_.assembled) result_.assembled = creafilehex(result_.image, path, report_, observer_);
    }

    AssemblyResult finish() {
        result_.listing = listing_.take();
        result_.report = report_.take();
        return std::move(result_);
    }

  private:
    void pass(std::string bytes, std::span<const std::string_view> opcodes) {
        const OpcodeTable table = creatabla(opcodes);
        for (int i = 0; i < table.rowsOutOfOrder(); ++i) observer_.message(message::badTable);
        observer_.report(0);  // reading it may have taken a while, as may what follows
        DecodedText decoded = decode(std::move(bytes), observer_);
        result_.encoding = decoded.encoding;
        if (decoded.text.empty()) return fail(message::emptyFile);
        if (countLines(decoded.text, observer_) > maximumLines) return fail(message::tooManyLines);

        observer_.report(0);
        SourceText source(std::move(decoded.text), observer_);
        Passes passes(table, source, listing_, report_, observer_);
        if (!passes.split() || !passes.place()) return;
        result_.assembled = passes.encode(result_.image);
    }

    AssemblyObserver& observer_;
    PaneText listing_;
    PaneText report_;
    AssemblyResult result_;
};

bool isTooLarge(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) &&
           std::filesystem::file_size(path, error) > maximumSourceSize && !error;
}

}  // namespace

AssemblyResult assemble(std::string bytes, AssemblyObserver& observer,
                        std::span<const std::string_view> opcodes) {
    Run run(observer);
    run.assemble(std::move(bytes), opcodes);
    return run.finish();
}

AssemblyResult Ensambla(const std::filesystem::path& file1, const std::filesystem::path& file2,
                        AssemblyObserver& observer) {
    Run run(observer);
    if (std::optional<std::string> bytes = readWholeFile(file1, maximumSourceSize)) {
        run.assemble(std::move(*bytes), opcodeSources);
        run.writeHex(file2);
    } else {
        run.fail(isTooLarge(file1) ? message::tooLarge : message::cannotOpen);
    }
    return run.finish();
}

}  // namespace tavinor
