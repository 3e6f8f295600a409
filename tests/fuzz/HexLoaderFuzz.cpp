// Any bytes as a HEX file: the loader ends with a message or a success, and never stores outside the memory.

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "images/HexLoader.h"
#include "tests/fuzz/FuzzSupport.h"

namespace {

using namespace tavinor;
using fuzz::expect;

/// One file of this process, in memory where the system has such a place.
std::filesystem::path inputFile() {
    const std::filesystem::path memory = "/dev/shm";
    const std::filesystem::path directory =
        std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
    return directory / ("tavinor-fuzz-" + std::to_string(getpid()) + ".hex");
}

void decodeAsRecord(std::string line) {
    fuzz::Machine host;
    const bool colon = line.starts_with(':');
    try {
        const RecordCode code = extlinfic(line, host.machine, host);
        expect(colon || code == RecordCode::formatError, "a record begins with a colon");
        expect(code != RecordCode::badOperation && code != RecordCode::badAddress, "codes never produced");
        const bool data = code == RecordCode::stored || code == RecordCode::badChecksum;
        expect(data || host.stored == 0, "only data records store");
        expect(host.stored <= 255, "a record has 255 bytes at most");
    } catch (const RuntimeError& error) {
        expect(error.number() == RuntimeError::Number::subscript, "only the memory's end stops a record");
    }
}

void loadAsFile(const std::string& bytes) {
    static const std::filesystem::path path = inputFile();
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    fuzz::Machine host;
    Breakpoints breakpoints;
    breakpoints.fill(-1);
    WorkObserver unobserved;
    const LoadResult result = carga(path, host.machine, breakpoints, host, unobserved);
    std::filesystem::remove(path);
    expect(result.loaded == result.message.empty(), "a failure has a message");
    expect(result.loaded == (breakpoints[0] == 0), "only a success clears the breakpoints");
    expect(host.stored <= 255 * (bytes.size() / 2 + 1), "not more than the records say");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    decodeAsRecord(bytes);
    loadAsFile(bytes);
    return 0;
}
