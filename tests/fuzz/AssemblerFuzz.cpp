// Any bytes as a source: the run ends, its texts agree with its outcome, and its records load as its image.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "assembler/Ensambla.h"
#include "assembler/HexWriter.h"
#include "images/HexLoader.h"
#include "tests/fuzz/FuzzSupport.h"
#include "text/Lines.h"
#include "text/Utf.h"

namespace {

using namespace tavinor;
using fuzz::expect;

/// Repeats what it is told.
struct Panes : AssemblyObserver {
    void cleared(Pane pane) override { textOf(pane).clear(); }
    void appended(Pane pane, std::string_view text) override { textOf(pane) += text; }
    std::string& textOf(Pane pane) { return pane == Pane::listing ? listing : report; }

    std::string listing;
    std::string report;
};

void expectLoads(const ImageBuffer& image) {
    const std::string records = hexRecords(image);
    fuzz::Machine host;
    WorkObserver unobserved;
    for (const std::string_view line : splitLines(records, unobserved)) {
        std::string record(line);
        try {
            const RecordCode code = extlinfic(record, host.machine, host);
            expect(code == RecordCode::stored || code == RecordCode::endRecord, "a good record");
        } catch (const RuntimeError&) {
            expect(line.substr(1, 5) == "10FFF", "only a record above FFF0 runs out of memory");
        }
    }
    std::size_t bytes = 0;
    for (std::size_t i = 0; i < imageSize; ++i) {
        if (image[i] == noByte) continue;
        ++bytes;
        expect(host.machine.mem[i] == image[i], "the byte comes back");
    }
    expect(bytes == host.stored, "no byte too many");
}

void expectSound(const AssemblyResult& result) {
    const bool errors = result.listing.find("==> ERROR: ") != std::string::npos;
    // The words may stand in a comment of the source as well, so errors may seem to be there after a success.
    expect(result.assembled || errors, "a failure is explained");
    expect(result.assembled == result.report.empty(), "the report is for errors");
    expect(result.listing.ends_with("\r\n"), "whole lines");
    WorkObserver unobserved;
    expect(isUtf8(result.listing, unobserved) && isUtf8(result.report, unobserved), "texts are UTF-8");
    expect(canEncode(result.listing, result.encoding), "the listing can be written like the source");
    const bool empty = std::all_of(result.image.begin(), result.image.end(),
                                   [](std::int16_t cell) { return cell == noByte; });
    expect(result.assembled || empty, "no image after an error");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string source(reinterpret_cast<const char*>(data), size);
    Panes panes;
    const AssemblyResult result = assemble(source, panes);
    expect(panes.listing == result.listing && panes.report == result.report, "the observer heard it all");
    expectSound(result);
    if (result.assembled) expectLoads(result.image);
    return 0;
}
