#include "tests/assembler/Support.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "machine/HexText.h"
#include "text/Lines.h"

namespace tavinor::test {

namespace {

std::string nameOf(Pane pane) {
    return pane == Pane::listing ? "listing" : "report";
}

}  // namespace

bool blessing() {
    return std::getenv("TAVINOR_BLESS") != nullptr;
}

std::string readBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void writeBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void RecordingObserver::cleared(Pane pane) {
    panes[pane].clear();
    events.push_back("clear " + nameOf(pane));
}

void RecordingObserver::appended(Pane pane, std::string_view text) {
    panes[pane] += text;
    events.push_back("append " + nameOf(pane));
}

void RecordingObserver::message(std::string_view text) {
    messages.emplace_back(text);
    events.push_back("message " + std::string(text));
}

AssemblyResult assembled(std::string_view source) {
    AssemblyObserver unobserved;
    return assemble(std::string(source), unobserved);
}

std::vector<std::string> linesOf(std::string_view text) {
    WorkObserver unobserved;
    const std::vector<std::string_view> lines = splitLines(text, unobserved);
    return {lines.begin(), lines.end()};
}

void LoadedMachine::savmem(std::int32_t dir, std::int32_t dat) {
    PlainHost::savmem(static_cast<std::int32_t>(asIndex(dir, memorySize)), dat);
    image[static_cast<std::size_t>(dir)] = static_cast<std::int16_t>(dat);
}

std::string differences(const ImageBuffer& expected, const ImageBuffer& actual) {
    std::string text;
    for (std::size_t i = 0; i < imageSize; ++i) {
        if (expected[i] == actual[i]) continue;
        text += hexa(static_cast<std::int32_t>(i), 4) + ": expected " + std::to_string(expected[i]) +
                ", is " + std::to_string(actual[i]) + "\n";
    }
    return text;
}

}  // namespace tavinor::test
