// Files that were not meant to be any: noise, damaged records, and a second reading of every line.

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "tests/images/Records.h"
#include "tests/support/Errors.h"

namespace tavinor::test {
namespace {

/// A line read in another way: columns into fields, fields filtered, then handed to the standard reader.
class SecondReading {
  public:
    explicit SecondReading(const std::string& line) {
        if (line.empty() || line[0] != ':') return;
        const std::string text = line.substr(1);
        const int count = value(text, 0, 2);
        const int address = value(text, 2, 4);
        const int type = value(text, 6, 2);
        const int checksum = text.size() < 2 ? value(text, 0, 2) : value(text, text.size() - 2, 2);
        const int header = count + (address >> 8) + (address & 0xFF) + type;
        if (type == 1) code = (header + checksum) % 256 == 0 ? 5 : 2;
        if (type != 0) return;
        if (text.size() < 10) {
            fails = true;
            return;
        }
        readData(text.substr(8, text.size() - 10), address, count);
        if (!fails) code = (header + dataSum_ + checksum) % 256 == 0 ? 0 : 2;
    }

    int code = 1;
    bool fails = false;  ///< With an error, after the writes.
    std::vector<Write> writes;

  private:
    static int value(const std::string& text, std::size_t from, std::size_t length) {
        std::string digitsOnly;
        for (std::size_t i = from; i < text.size() && i < from + length; ++i) {
            const char c = text[i];
            if (c == ' ' || c == '\t') continue;
            if (std::isxdigit(static_cast<unsigned char>(c)) == 0) break;
            digitsOnly += c;
        }
        return static_cast<int>(std::strtol(("0" + digitsOnly).c_str(), nullptr, 16));
    }

    void readData(const std::string& data, int address, int count) {
        for (int i = 0; i < count; ++i) {
            const int byte = value(data, static_cast<std::size_t>(2 * i), 2);
            dataSum_ += byte;
            writes.push_back({address + i, byte});
            fails = address + i > 0xFFFF;
            if (fails) return;
        }
    }

    int dataSum_ = 0;
};

class HexNoiseTest : public ::testing::Test {
  protected:
    /// One line through the loader and through the second reading.
    void compare(const std::string& line) {
        bench.host.memoryWrites.clear();
        const SecondReading expected(line);
        std::string consumed = line;
        int code = -1;
        const int error = errorOf([&] { code = static_cast<int>(extlinfic(consumed, bench.m, bench.host)); });
        ASSERT_EQ(error != noError, expected.fails) << line;
        ASSERT_EQ(bench.host.memoryWrites, expected.writes) << line;
        ASSERT_EQ(code, expected.fails ? -1 : expected.code) << line;
    }

    std::string anyOf(std::string_view alphabet, std::size_t length) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i) text += alphabet[random() % alphabet.size()];
        return text;
    }

    std::vector<int> bytes(std::size_t count) {
        std::vector<int> data;
        for (std::size_t i = 0; i < count; ++i) data.push_back(static_cast<int>(random() & 0xFF));
        return data;
    }

    /// A file may do one of four things, and only a success clears the breakpoints.
    void expectAKnownEnd(const std::string& content) {
        bench.clear();
        const LoadResult result = bench.loadText(content);
        if (result.loaded) {
            EXPECT_EQ(result.message, "");
            EXPECT_TRUE(bench.breakpointsCleared());
            return;
        }
        EXPECT_TRUE(bench.breakpointsKept());
        const std::string start = "Error en fichero " + (bench.folder.path() / "prog.hex").string() + ".\r";
        const bool known = result.message == "Error en lectura" ||
                           result.message == start + "Formato incorrecto." ||
                           result.message == start + "No hay código de fin.";
        EXPECT_TRUE(known) << result.message;
    }

    std::mt19937 random{2716};
    std::unique_ptr<LoadBench> owner = std::make_unique<LoadBench>();
    LoadBench& bench = *owner;
};

TEST_F(HexNoiseTest, CorrectRecordsReadTheSameTwice) {
    for (int i = 0; i < 3000; ++i) {
        const int address = static_cast<int>(random() & 0xFFFF);
        const int type = static_cast<int>(random() % 3);
        ASSERT_NO_FATAL_FAILURE(compare(record(address, bytes(random() % 40), type)));
    }
}

TEST_F(HexNoiseTest, LinesOfDigitsReadTheSameTwice) {
    for (int i = 0; i < 20'000; ++i) {
        std::string line = ":" + anyOf("0123456789ABCDEFabcdef", random() % 60);
        if (line.size() > 8 && random() % 4 != 0) line.replace(7, 2, random() % 2 == 0 ? "00" : "01");
        ASSERT_NO_FATAL_FAILURE(compare(line));
    }
}

TEST_F(HexNoiseTest, LinesOfDigitsAndOtherCharactersReadTheSameTwice) {
    using namespace std::string_view_literals;
    for (int i = 0; i < 20'000; ++i) {
        const std::string line = ":" + anyOf("000000001111AF 9\tgG:,\"\0\xF1\r"sv, random() % 40);
        ASSERT_NO_FATAL_FAILURE(compare(line));
    }
}

TEST_F(HexNoiseTest, DamagedRecordsReadTheSameTwice) {
    for (int i = 0; i < 20'000; ++i) {
        std::string line = record(static_cast<int>(random() & 0xFFFF), bytes(random() % 20));
        const std::size_t place = random() % line.size();
        switch (random() % 3) {
            case 0: line[place] = static_cast<char>(random() & 0x7F); break;
            case 1: line.erase(place); break;
            default: line.insert(place, 1, '0'); break;
        }
        std::erase(line, '\n');  // would be the end of the line
        ASSERT_NO_FATAL_FAILURE(compare(line));
    }
}

TEST_F(HexNoiseTest, BinaryNoiseEndsInOneOfTheKnownMessages) {
    for (int i = 0; i < 150; ++i) {
        std::string content;
        for (std::size_t length = random() % 5000; length > 0; --length) {
            content += static_cast<char>(random() & 0xFF);
        }
        ASSERT_NO_FATAL_FAILURE(expectAKnownEnd(content));
        ASSERT_NO_FATAL_FAILURE(expectAKnownEnd(":" + content));
    }
}

TEST_F(HexNoiseTest, FilesOfLikelyCharactersEndInOneOfTheKnownMessages) {
    for (int i = 0; i < 300; ++i) {
        std::string content;
        for (std::size_t length = random() % 30; length > 0; --length) {
            content += ":" + anyOf("00000000001F", 8 + random() % 20) + "\n";
        }
        ASSERT_NO_FATAL_FAILURE(expectAKnownEnd(content + endLine));
    }
}

}  // namespace
}  // namespace tavinor::test
