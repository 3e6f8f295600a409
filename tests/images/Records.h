#pragma once

#include <cstdio>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "images/HexLoader.h"
#include "tests/support/Differences.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestHost.h"

namespace tavinor::test {

inline const std::string endLine = ":00000001FF";

/// `byte` as two upper-case digits.
inline std::string digits(int byte) {
    std::array<char, 3> text{};
    std::snprintf(text.data(), text.size(), "%02X", static_cast<unsigned>(byte & 0xFF));
    return text.data();
}

/// A correct record: the checksum makes the sum of all its bytes a multiple of 256.
inline std::string record(int address, const std::vector<int>& data, int type = 0) {
    std::vector<int> bytes{static_cast<int>(data.size()), address >> 8, address & 0xFF, type};
    bytes.insert(bytes.end(), data.begin(), data.end());
    std::string line = ":";
    int sum = 0;
    for (const int byte : bytes) {
        line += digits(byte);
        sum += byte;
    }
    return line + digits(-sum);
}

/// The lines one after the other, each with its end.
inline std::string lines(std::initializer_list<std::string> texts, std::string_view end = "\r\n") {
    std::string all;
    for (const std::string& text : texts) all += text + std::string(end);
    return all;
}

/// A machine full of FF with breakpoints everywhere, to load files into.
class LoadBench {
  public:
    LoadBench() { clear(); }

    void clear() {
        m.mem.fill(0xFF);
        breakpoints.fill(-1);
        host.memoryWrites.clear();
    }

    LoadResult load(const std::filesystem::path& path) { return carga(path, m, breakpoints, host, observer); }
    LoadResult loadText(std::string_view content) { return load(folder.write("prog.hex", content)); }

    [[nodiscard]] int at(std::int32_t address) const { return m.mem[static_cast<std::size_t>(address)]; }
    [[nodiscard]] bool breakpointsCleared() const { return breakpoints == Breakpoints{}; }
    [[nodiscard]] bool breakpointsKept() const {
        Breakpoints all{};
        all.fill(-1);
        return breakpoints == all;
    }

    TemporaryFolder folder;
    MachineState m;
    Breakpoints breakpoints{};
    TestHost host{m};
    WorkObserver observer;  // lets every load go on
};

}  // namespace tavinor::test
