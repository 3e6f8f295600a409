// Sources made of random pieces: whatever comes of them, some things always hold.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "assembler/HexWriter.h"
#include "images/HexLoader.h"
#include "machine/HexText.h"
#include "tests/assembler/Support.h"

namespace tavinor::test {

namespace {

constexpr std::array<std::string_view, 24> statements{
    "NOP",         "MVI A,5",     "MOV B , C", "LXI H,L1",   "JMP L2",      "CALL L3+1",
    "DFB 1,2,3,4", "DFW L1,L2",   "ORG 100H",  "ORG 0FFF0H", "EQU 12H",     "DFB L1-L1",
    "CM A",        "RST 5",       "END",       "CPU 8085",   "ADI 0FFH-10", "STA 0FFFFH",
    "mov a,m",     "dfb 0,255,1", "IN 0A0H",   "hlt",        "LDA L2-1",    "DFW 0-0",
};
constexpr std::array<std::string_view, 10> troubles{
    "HOLA", "MOVA,B", "MVI A,256", "JMP NADA", "ORG X", "DFB", "DFB 1,,2", "LXI H,-1", "A: B: NOP", ":",
};
constexpr std::array<std::string_view, 5> comments{"", "", " ; comentario", "\t;TAB", ";ñandú"};

class Sources {
  public:
    explicit Sources(std::uint32_t seed) : random_(seed) {}

    /// Some sources are free of troubles, most of the others have few.
    std::string next() {
        const int lines = upTo(30);
        const bool troubled = upTo(3) == 0;
        std::string text;
        for (const char* label : {"L1:", "L2:", "L3:"}) text += label + line(troubled);
        for (int i = 0; i < lines; ++i) text += (upTo(6) == 0 ? std::string() : " ") + line(troubled);
        return text;
    }

  private:
    std::string line(bool troubled) {
        std::string text = " ";
        if (troubled && upTo(10) == 0) {
            text += troubles[index(troubles.size())];
        } else if (upTo(8) != 0) {
            text += statements[index(statements.size())];
        }
        text += comments[index(comments.size())];
        return text + "\n";
    }

    int upTo(int n) { return std::uniform_int_distribution<int>(0, n)(random_); }
    std::size_t index(std::size_t size) {
        return std::uniform_int_distribution<std::size_t>(0, size - 1)(random_);
    }

    std::mt19937 random_;
};

bool isHex(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return std::isdigit(c) != 0 || (c >= 'A' && c <= 'F'); });
}

/// The image as the listing shows it: every line that begins with an address, in order.
ImageBuffer imageOfListing(const std::string& listing) {
    ImageBuffer image;
    image.fill(noByte);
    for (const std::string& line : linesOf(listing)) {
        if (line.starts_with("----")) break;
        if (line.size() < 5 || !isHex(line.substr(0, 4)) || line[4] != ' ') continue;
        const std::string digits = line.substr(5, line.find(' ', 5) - 5);
        auto place = static_cast<std::size_t>(dec(line.substr(0, 4)));
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
            image.at(place++) = static_cast<std::int16_t>(dec(digits.substr(i, 2)));
        }
    }
    return image;
}

ImageBuffer imageOfRecords(const std::string& records) {
    LoadedMachine host;
    for (std::string& record : linesOf(records)) {
        try {
            extlinfic(record, host.machine, host);
        } catch (const RuntimeError&) {
            // A record that begins above FFF0: what it carries is stored.
        }
    }
    return host.image;
}

void expectSound(const std::string& source, const AssemblyResult& result) {
    const bool reported = result.report.find(" - ERROR: ") != std::string::npos;
    EXPECT_NE(result.assembled, reported) << source;
    EXPECT_EQ(result.listing.find("==> ERROR: ") != std::string::npos, reported) << source;
    if (result.assembled) {
        EXPECT_EQ(differences(imageOfListing(result.listing), result.image), "") << source;
        EXPECT_EQ(differences(imageOfRecords(hexRecords(result.image)), result.image), "") << source;
    }
}

/// The symbol table of the listing; empty where it has none.
std::string symbolsOf(const AssemblyResult& result) {
    const std::size_t begin = result.listing.find("TABLA DE SIMBOLOS");
    return begin == std::string::npos ? std::string() : result.listing.substr(begin);
}

/// The same source written otherwise gives the same program.
void expectSameProgram(const std::string& source, const AssemblyResult& result) {
    const AssemblyResult other = assembled(source);
    EXPECT_EQ(other.assembled, result.assembled) << source;
    EXPECT_EQ(symbolsOf(other), symbolsOf(result)) << source;
    EXPECT_EQ(differences(result.image, other.image), "") << source;
}

std::string replaced(std::string text, char from, std::string_view to) {
    std::string result;
    for (const char c : text) c == from ? result += to : result += c;
    return result;
}

std::string lowerCased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

TEST(RandomSources, KeepTheirPromises) {
    Sources sources(8085);
    int good = 0;
    constexpr int tried = 1500;
    for (int i = 0; i < tried; ++i) {
        const std::string source = sources.next();
        const AssemblyResult result = assembled(source);
        if (result.assembled) ++good;
        expectSound(source, result);
        expectSameProgram(lowerCased(source), result);
        expectSameProgram(replaced(source, ' ', "\t"), result);
        expectSameProgram(replaced(source, '\n', "  ; fin\r\n\r\n"), result);
        expectSameProgram("\n\n; antes\n" + source + "; al final", result);
    }
    // Both kinds must have been tried in earnest.
    EXPECT_GT(good, tried / 10);
    EXPECT_LT(good, tried * 9 / 10);
}

TEST(RandomBytes, AreTakenWithoutComplaint) {
    std::mt19937 random(8085);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int i = 0; i < 2000; ++i) {
        std::string source(static_cast<std::size_t>(i % 200 + 1), '\0');
        for (char& c : source) c = static_cast<char>(byte(random));
        expectSound(source, assembled(source));
    }
}

}  // namespace

}  // namespace tavinor::test
