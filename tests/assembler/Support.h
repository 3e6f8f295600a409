#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "assembler/AssemblyObserver.h"
#include "assembler/Ensambla.h"
#include "machine/MachineState.h"
#include "tests/support/PlainHost.h"
#include "tests/support/TemporaryFolder.h"

/// What the tests of the assembler share.
namespace tavinor::test {

/// Whether what the tests expect shall be written anew instead (scripts/bless).
bool blessing();

std::string readBytes(const std::filesystem::path& path);
void writeBytes(const std::filesystem::path& path, std::string_view bytes);

/// Keeps what an assembly tells: the texts of the panes, the messages, and the order of it all.
class RecordingObserver : public AssemblyObserver {
  public:
    void cleared(Pane pane) override;
    void appended(Pane pane, std::string_view text) override;
    void message(std::string_view text) override;

    std::map<Pane, std::string> panes;
    std::vector<std::string> messages;
    std::vector<std::string> events;  ///< "clear listing", "append report", "message ..."
};

/// Assembles a text of lines that end in LF.
AssemblyResult assembled(std::string_view source);

/// The listing's lines without their ends.
std::vector<std::string> linesOf(std::string_view text);

/// A machine that stores what a HEX file loads into it, and remembers which addresses.
struct LoadedMachine final : PlainHost {
    LoadedMachine() : PlainHost(machine) { image.fill(noByte); }

    void savmem(std::int32_t dir, std::int32_t dat) override;

    MachineState machine;
    ImageBuffer image;  ///< Only what was stored.
};

/// Only the addresses where the two differ, as text; empty when they are equal.
std::string differences(const ImageBuffer& expected, const ImageBuffer& actual);

}  // namespace tavinor::test
