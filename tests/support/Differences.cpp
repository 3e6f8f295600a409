#include "tests/support/Differences.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "machine/HexText.h"

namespace tavinor::test {

namespace {

class Report {
  public:
    void compare(const std::string& name, std::int32_t actual, std::int32_t expected) {
        if (actual == expected) return;
        text_ += name + ": " + hexa(actual, 8) + ", not " + hexa(expected, 8) + "\n";
    }

    template <std::size_t size>
    void compareCells(const std::string& name, const std::array<std::uint8_t, size>& actual,
                      const std::array<std::uint8_t, size>& expected) {
        int shown = 0;
        auto places = std::mismatch(actual.begin(), actual.end(), expected.begin());
        while (places.first != actual.end() && shown++ < 8) {
            const auto index = static_cast<std::int32_t>(places.first - actual.begin());
            compare(name + "[" + hexa(index, 5) + "]", *places.first, *places.second);
            places = std::mismatch(std::next(places.first), actual.end(), std::next(places.second));
        }
    }

    [[nodiscard]] std::string text() const { return text_; }

  private:
    std::string text_;
};

void compareRegisters(Report& report, const Registers& actual, const Registers& expected) {
    constexpr std::array<std::pair<const char*, std::uint8_t Registers::*>, 8> bytes{{
        {"A", &Registers::A},
        {"B", &Registers::B},
        {"C", &Registers::C},
        {"D", &Registers::D},
        {"E", &Registers::E},
        {"F", &Registers::F},
        {"H", &Registers::H},
        {"L", &Registers::L},
    }};
    constexpr std::array<std::pair<const char*, std::int32_t Registers::*>, 6> words{{
        {"PSW", &Registers::PSW},
        {"BC", &Registers::BC},
        {"DE", &Registers::DE},
        {"HL", &Registers::HL},
        {"PC", &Registers::PC},
        {"SP", &Registers::SP},
    }};
    for (const auto& [name, cell] : bytes) report.compare(name, actual.*cell, expected.*cell);
    for (const auto& [name, cell] : words) report.compare(name, actual.*cell, expected.*cell);
}

}  // namespace

std::string registerDifferences(const Registers& actual, const Registers& expected) {
    Report report;
    compareRegisters(report, actual, expected);
    return report.text();
}

std::string differences(const MachineState& actual, const MachineState& expected) {
    Report report;
    compareRegisters(report, actual, expected);
    const InterruptState& found = actual.intState;
    const InterruptState& wanted = expected.intState;
    report.compare("IE", found.IE, wanted.IE);
    report.compare("M55", found.M55, wanted.M55);
    report.compare("M65", found.M65, wanted.M65);
    report.compare("M75", found.M75, wanted.M75);
    report.compare("R75", found.R75, wanted.R75);
    report.compare("SID", actual.SID, expected.SID);
    report.compare("SOD", actual.SOD, expected.SOD);
    if (actual.mem != expected.mem) report.compareCells("mem", actual.mem, expected.mem);
    report.compareCells("port", actual.port, expected.port);
    return report.text();
}

}  // namespace tavinor::test
