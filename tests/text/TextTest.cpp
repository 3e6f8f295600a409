#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/Characters.h"
#include "text/Lines.h"
#include "text/TextEncoding.h"
#include "text/Utf.h"

namespace tavinor {

namespace {

std::string everyByte() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    return bytes;
}

DecodedText decode(std::string bytes) {
    WorkObserver unobserved;
    return decode(std::move(bytes), unobserved);
}
bool isUtf8(std::string_view bytes) {
    WorkObserver unobserved;
    return isUtf8(bytes, unobserved);
}
std::vector<std::string_view> splitLines(std::string_view text) {
    WorkObserver unobserved;
    return splitLines(text, unobserved);
}

/// Counts how often it is asked, and ends the work when it has been asked too often.
struct CountingObserver : WorkObserver {
    explicit CountingObserver(int most) : left(most) {}
    bool goesOn(double /*done*/) override { return --left >= 0; }

    int left;
};

std::string upperCased(std::string text) {
    upperCase(text);
    return text;
}

TEST(Decoding, AsciiAndUtf8StayAsTheyAre) {
    for (const std::string text : {"", "NOP\r\n", "Ñandú €", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"}) {
        const DecodedText decoded = decode(text);
        EXPECT_EQ(decoded.text, text);
        EXPECT_EQ(decoded.encoding, TextEncoding::utf8);
    }
}

TEST(Decoding, SkipsAByteOrderMark) {
    EXPECT_EQ(decode("\xEF\xBB\xBFNOP").text, "NOP");
    EXPECT_EQ(decode("\xEF\xBB\xBF").text, "");
    EXPECT_EQ(decode("\xEF\xBB\xBF"
                     "a\xF1o")
                  .text,
              "año");
    EXPECT_EQ(decode("NOP\xEF\xBB\xBF").text, "NOP\xEF\xBB\xBF");
}

TEST(Decoding, MalformedUtf8IsWindows1252) {
    for (const std::string bytes :
         {"\x80", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80",
          "\xF8\x88\x80\x80\x80", "\xFF", "ok\xF1", "12345678\xF1", "\xC3\xA9\xE9", "\xC3("}) {
        EXPECT_FALSE(isUtf8(bytes));
        EXPECT_EQ(decode(bytes).encoding, TextEncoding::windows1252) << bytes;
        EXPECT_TRUE(isUtf8(decode(bytes).text));
    }
}

TEST(Decoding, MalformedAtEveryPlaceIsSeen) {
    for (std::size_t place = 0; place < 40; ++place) {
        std::string bytes(40, 'x');
        bytes[place] = '\xF1';
        EXPECT_FALSE(isUtf8(bytes)) << place;
    }
}

TEST(Utf8, KeepsItsMark) {
    EXPECT_EQ(decode("\xEF\xBB\xBF"
                     "NOP")
                  .encoding,
              TextEncoding::markedUtf8);
    EXPECT_EQ(encode("a Ω", TextEncoding::markedUtf8),
              "\xEF\xBB\xBF"
              "a Ω");
    EXPECT_TRUE(canEncode("a Ω", TextEncoding::markedUtf8));
}

/// "A", an accented letter, one of three bytes in UTF-8, and one that takes a pair.
constexpr std::string_view letters = "Añ€😀";

TEST(Utf16, GoesThereAndBack) {
    using namespace std::string_literals;
    const std::string little = "\xFF\xFE"s + "A\0"s + "\xF1\0"s + "\xAC\x20\x3D\xD8\x00\xDE"s;
    const std::string big = "\xFE\xFF"s + "\0A"s + "\0\xF1"s + "\x20\xAC\xD8\x3D\xDE\x00"s;
    EXPECT_EQ(decode(little).text, letters);
    EXPECT_EQ(decode(little).encoding, TextEncoding::utf16LittleEndian);
    EXPECT_EQ(encode(std::string(letters), TextEncoding::utf16LittleEndian), little);
    EXPECT_EQ(decode(big).text, letters);
    EXPECT_EQ(decode(big).encoding, TextEncoding::utf16BigEndian);
    EXPECT_EQ(encode(std::string(letters), TextEncoding::utf16BigEndian), big);
    EXPECT_TRUE(canEncode(letters, TextEncoding::utf16BigEndian));
}

TEST(Utf16, EveryCharacterOfTheBasicPlaneSurvives) {
    std::string text;
    for (char32_t c = 0; c < 0x10000; ++c) {
        if (c < 0xD800 || c > 0xDFFF) appendUtf8(text, c);
    }
    for (const TextEncoding encoding : {TextEncoding::utf16LittleEndian, TextEncoding::utf16BigEndian}) {
        const DecodedText decoded = decode(encode(text, encoding));
        EXPECT_EQ(decoded.text, text);
        EXPECT_EQ(decoded.encoding, encoding);
    }
}

TEST(Utf16, MalformedIsWindows1252) {
    using namespace std::string_literals;
    for (const std::string& units : {"A"s, "A\0B"s, "\x3D\xD8"s, "\x3D\xD8"s + "A\0"s, "\x00\xDE"s}) {
        const std::string bytes = "\xFF\xFE" + units;
        const DecodedText decoded = decode(bytes);
        EXPECT_EQ(decoded.encoding, TextEncoding::windows1252);
        EXPECT_EQ(encode(decoded.text, TextEncoding::windows1252), bytes);
    }
    EXPECT_EQ(utf8ToUtf16("\xFF"
                          "A",
                          ByteOrder::bigEndian),
              "\xFF\xFD"s + "\0A"s);
}

TEST(Windows1252, HasItsOwnCharacters) {
    EXPECT_EQ(decode("\x80\x9F\x93\xF1").text, "€Ÿ“ñ");
    EXPECT_EQ(encode("€Ÿ“ñ", TextEncoding::windows1252), "\x80\x9F\x93\xF1");
}

TEST(Windows1252, EveryByteSurvives) {
    const DecodedText decoded = decode(everyByte());
    ASSERT_EQ(decoded.encoding, TextEncoding::windows1252);
    EXPECT_TRUE(canEncode(decoded.text, TextEncoding::windows1252));
    EXPECT_EQ(encode(decoded.text, TextEncoding::windows1252), everyByte());
}

TEST(Windows1252, EveryByteInCapitalsStillExists) {
    std::string text = decode(everyByte()).text;
    const std::size_t length = text.size();
    upperCase(text);
    EXPECT_EQ(text.size(), length);
    EXPECT_TRUE(canEncode(text, TextEncoding::windows1252));
}

TEST(Windows1252, ReplacesWhatItDoesNotHave) {
    EXPECT_FALSE(canEncode("a Ω", TextEncoding::windows1252));
    EXPECT_EQ(encode("a Ω 😀.", TextEncoding::windows1252), "a ? ?.");
    EXPECT_TRUE(canEncode("a Ω", TextEncoding::utf8));
    EXPECT_EQ(encode("a Ω", TextEncoding::utf8), "a Ω");
    EXPECT_EQ(encode("\xFF", TextEncoding::windows1252), "?");
}

TEST(Lines, EndInEachOfThreeWays) {
    using Lines = std::vector<std::string_view>;
    EXPECT_EQ(splitLines(""), Lines{});
    EXPECT_EQ(splitLines("a"), (Lines{"a"}));
    EXPECT_EQ(splitLines("a\r\nb\nc\rd"), (Lines{"a", "b", "c", "d"}));
    EXPECT_EQ(splitLines("a\r\n"), (Lines{"a"}));
    EXPECT_EQ(splitLines("a\r"), (Lines{"a"}));
    EXPECT_EQ(splitLines("\n"), (Lines{""}));
    EXPECT_EQ(splitLines("\r\r\n\n"), (Lines{"", "", ""}));
    EXPECT_EQ(splitLines("\n\r"), (Lines{"", ""}));
    EXPECT_EQ(splitLines(" \n"), (Lines{" "}));
}

TEST(Lines, EndWhereOtherProgramsEndThem) {
    using Lines = std::vector<std::string_view>;
    EXPECT_EQ(splitLines("a\u2028b\u2029c\u0085d"), (Lines{"a", "b", "c", "d"}));
    EXPECT_EQ(splitLines("\u2028\n\u2029"), (Lines{"", "", ""}));
    EXPECT_EQ(splitLines("a\u2027b\u202Ac\u0084d\u2128"), (Lines{"a\u2027b\u202Ac\u0084d\u2128"}));
    EXPECT_EQ(splitLines("a\xE2\x80"), (Lines{"a\xE2\x80"}));
}

TEST(Lines, AreCounted) {
    WorkObserver unobserved;
    for (const std::string_view text : {"", "a", "a\r\nb\nc\rd", "\n\r", "\r\n", "a\u2028b\u0085"}) {
        EXPECT_EQ(countLines(text, unobserved), splitLines(text).size()) << text;
    }
}

/// A window has to answer while a text of many megabytes is read.
TEST(LongTexts, CanBeObservedAndCancelled) {
    constexpr std::size_t size = std::size_t{4} * 1024 * 1024;
    const std::string lines = encode(std::string(size, '\n'), TextEncoding::utf16LittleEndian);
    std::string mixed;
    while (mixed.size() < size) mixed += "\u00F1a";
    const std::vector<std::function<void(WorkObserver&)>> works{
        [&](WorkObserver& observer) { decode(lines, observer); },
        [&](WorkObserver& observer) { decode(std::string(size, '\xF1'), observer); },
        [&](WorkObserver& observer) { decode(mixed, observer); },
        [&](WorkObserver& observer) { splitLines(lines, observer); },
        [&](WorkObserver& observer) { countLines(lines, observer); },
    };
    for (const auto& work : works) {
        constexpr int plenty = 1000;
        CountingObserver observer(plenty);
        work(observer);
        EXPECT_LT(observer.left, plenty - 8);
        CountingObserver ending(3);
        EXPECT_THROW(work(ending), Cancelled);
    }
}

TEST(Capitals, OfLettersWithAndWithoutAccents) {
    EXPECT_EQ(upperCased("abcxyz019_@[`{"), "ABCXYZ019_@[`{");
    EXPECT_EQ(upperCased("áéíóúüñçàêõœšžÿ"), "ÁÉÍÓÚÜÑÇÀÊÕŒŠŽŸ");
    EXPECT_EQ(upperCased("ÁÉÍ÷×ß"), "ÁÉÍ÷×ß");
    EXPECT_EQ(upperCased("łőřţǎǵșẁỳ"), "ŁŐŘŢǍǴȘẀỲ");
    EXPECT_EQ(upperCased("αβγςάώжцё"), "ΑΒΓΣΆΏЖЦЁ");
    EXPECT_EQ(upperCased("€😀"), "€😀");
}

TEST(Capitals, LeaveWhatWouldChangeItsLength) {
    EXPECT_EQ(upperCased("ßıſŉǰ"), "ßıſŉǰ");
    EXPECT_EQ(upperCased("µƒ"), "µƒ");  // and what would leave Windows-1252
}

TEST(Capitals, FromAPlaceOn) {
    std::string text = "abañb";
    upperCase(text, 2);
    EXPECT_EQ(text, "abAÑB");
}

TEST(Capitals, DoNotTouchMalformedText) {
    EXPECT_EQ(upperCased("a\xFF"
                         "b\xC3"),
              "A\xFF"
              "B\xC3");
}

TEST(Capitals, AreCapitalsThemselves) {
    for (char32_t c = 0; c < 0x3000; ++c) {
        EXPECT_EQ(upperCase(upperCase(c)), upperCase(c)) << static_cast<std::uint32_t>(c);
    }
}

}  // namespace

}  // namespace tavinor
