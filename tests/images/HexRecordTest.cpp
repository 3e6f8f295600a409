// One line of a HEX file at a time.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/images/Records.h"
#include "tests/support/Errors.h"

namespace tavinor::test {
namespace {

class HexRecordTest : public ::testing::Test {
  protected:
    RecordCode read(std::string line) { return extlinfic(line, m, host); }
    int errorIn(std::string line) {
        return errorOf([&] { extlinfic(line, m, host); });
    }

    std::unique_ptr<MachineState> machine = std::make_unique<MachineState>();
    MachineState& m = *machine;
    TestHost host{m};
};

TEST_F(HexRecordTest, ADataRecordIsStored) {
    EXPECT_EQ(read(":03010000AABBCCCB"), RecordCode::stored);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x100, 0xAA}, {0x101, 0xBB}, {0x102, 0xCC}}));
}

TEST_F(HexRecordTest, ADataRecordOfNoBytesIsStored) {
    EXPECT_EQ(read(":0000000000"), RecordCode::stored);
    EXPECT_EQ(read(record(0x1234, {})), RecordCode::stored);
    EXPECT_TRUE(host.memoryWrites.empty());
}

TEST_F(HexRecordTest, ADataRecordOf255BytesIsStored) {
    std::vector<int> data;
    for (int i = 0; i < 255; ++i) data.push_back(255 - i);
    EXPECT_EQ(read(record(0x8000, data)), RecordCode::stored);
    ASSERT_EQ(host.memoryWrites.size(), 255U);
    EXPECT_EQ(host.memoryWrites.back(), (Write{0x80FE, 1}));
}

TEST_F(HexRecordTest, AddressesAbove7FFFAreNotNegative) {
    EXPECT_EQ(read(record(0x8000, {1})), RecordCode::stored);
    EXPECT_EQ(read(record(0xFFFF, {2})), RecordCode::stored);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x8000, 1}, {0xFFFF, 2}}));
}

TEST_F(HexRecordTest, LowerCaseDigitsAreAccepted) {
    EXPECT_EQ(read(":03010000aabbcccb"), RecordCode::stored);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x100, 0xAA}, {0x101, 0xBB}, {0x102, 0xCC}}));
}

TEST_F(HexRecordTest, ALineWithoutItsColonIsAFormatError) {
    for (const char* line : {"", "00000001FF", ";00000001FF", "\t:00000001FF", "x", " :00000001FF"}) {
        EXPECT_EQ(read(line), RecordCode::formatError) << line;
    }
}

TEST_F(HexRecordTest, TypesOtherThan00And01AreFormatErrors) {
    for (int type = 2; type < 256; ++type) {
        EXPECT_EQ(read(record(0, {0, 0}, type)), RecordCode::formatError) << type;
    }
    EXPECT_TRUE(host.memoryWrites.empty());
}

TEST_F(HexRecordTest, TheEndRecordIsRecognised) {
    EXPECT_EQ(read(endLine), RecordCode::endRecord);
    EXPECT_EQ(read(":00000001ff"), RecordCode::endRecord);
}

TEST_F(HexRecordTest, AddressAndCountOfTheEndRecordAreSummedAndNotChecked) {
    EXPECT_EQ(read(":00123401B9"), RecordCode::endRecord);
    EXPECT_EQ(read(":05FFFF01FC"), RecordCode::endRecord);
    EXPECT_TRUE(host.memoryWrites.empty());
}

TEST_F(HexRecordTest, DataOfAnEndRecordIsNeitherSummedNorStored) {
    EXPECT_EQ(read(":02000001AABBFD"), RecordCode::endRecord);
    EXPECT_EQ(read(record(0, {0xAA, 0xBB}, 1)), RecordCode::badChecksum);
    EXPECT_TRUE(host.memoryWrites.empty());
}

TEST_F(HexRecordTest, AnEndRecordWithAWrongChecksumIsAChecksumError) {
    for (const char* line : {":00000001FE", ":0000000100", ":00000001", ":000000010F"}) {
        EXPECT_EQ(read(line), RecordCode::badChecksum) << line;
    }
}

TEST_F(HexRecordTest, ADataRecordWithAWrongChecksumIsStoredAllTheSame) {
    EXPECT_EQ(read(":03010000AABBCCCC"), RecordCode::badChecksum);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x100, 0xAA}, {0x101, 0xBB}, {0x102, 0xCC}}));
}

TEST_F(HexRecordTest, OnlyOneChecksumOf256IsRight) {
    const std::string line = record(0x1234, {0x12, 0x34});
    const std::string body = line.substr(0, line.size() - 2);
    for (int checksum = 0; checksum < 256; ++checksum) {
        const std::string candidate = body + digits(checksum);
        EXPECT_EQ(read(candidate), candidate == line ? RecordCode::stored : RecordCode::badChecksum);
    }
}

TEST_F(HexRecordTest, ACountLargerThanTheDataStoresZeros) {
    m.mem.fill(0xFF);
    EXPECT_EQ(read(":05010000AABB95"), RecordCode::stored);
    EXPECT_EQ(host.memoryWrites,
              (std::vector<Write>{{0x100, 0xAA}, {0x101, 0xBB}, {0x102, 0}, {0x103, 0}, {0x104, 0}}));
}

TEST_F(HexRecordTest, ACountSmallerThanTheDataStoresOnlyTheCount) {
    EXPECT_EQ(read(":01010000AABBCC54"), RecordCode::stored) << "the checksum is what the line ends with";
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x100, 0xAA}}));
}

TEST_F(HexRecordTest, HalfAPairReadsAsItsOneDigit) {
    EXPECT_EQ(read(":02010000AABFD"), RecordCode::badChecksum);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x100, 0xAA}, {0x101, 0x0B}}));
}

TEST_F(HexRecordTest, CharactersThatAreNoDigitsEndTheirField) {
    EXPECT_EQ(read(":01010000G1FE"), RecordCode::stored) << "no digit is 0";
    EXPECT_EQ(read(":010100001GFD"), RecordCode::stored);
    EXPECT_EQ(read(":0G01000000FF"), RecordCode::stored) << "a count of 0";
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x100, 0}, {0x100, 1}}));
}

TEST_F(HexRecordTest, BlanksAndTabsInsideAFieldAreSkipped) {
    EXPECT_EQ(read(":01 1 0001 EE"), RecordCode::stored) << "the address is 10";
    EXPECT_EQ(read(":01\t1\t0001\tEE"), RecordCode::stored);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x10, 1}, {0x10, 1}}));
}

TEST_F(HexRecordTest, ANulByteEndsItsField) {
    using namespace std::string_literals;
    EXPECT_EQ(read(":010100004\0FA"s), RecordCode::stored);
    EXPECT_EQ(read(":01010000\0"
                   "4FE"s),
              RecordCode::stored);
    EXPECT_EQ(host.memoryWrites, (std::vector<Write>{{0x100, 4}, {0x100, 0}}));
}

TEST_F(HexRecordTest, TypesThatReadAs1AreEndRecords) {
    EXPECT_EQ(read(":0000001GFF"), RecordCode::endRecord);
    EXPECT_EQ(read(":000000 1FF"), RecordCode::endRecord);
    EXPECT_EQ(read(":0000001 FF"), RecordCode::endRecord);
}

TEST_F(HexRecordTest, ARecordTooShortForItsChecksumIsAnError) {
    for (const char* line : {":", ":0", ":00", ":0000", ":000000", ":0000000", ":00000000", ":000000000"}) {
        EXPECT_NE(errorIn(line), noError) << line;
    }
    EXPECT_EQ(read(":0000000000"), RecordCode::stored) << "just long enough";
    EXPECT_TRUE(host.memoryWrites.empty());
}

TEST_F(HexRecordTest, AShortLineReadsItsFieldsFromTheDigitsThatAreThere) {
    EXPECT_EQ(read(":0000001"), RecordCode::badChecksum) << "type 1, and the checksum is the 01 at its end";
    EXPECT_EQ(read(":FE00001"), RecordCode::endRecord) << "FE + 1, and the same 01";
    EXPECT_EQ(read(":FE000001"), RecordCode::endRecord) << "type 01 serves as the checksum too";
    EXPECT_EQ(read(":0000002"), RecordCode::formatError);
}

TEST_F(HexRecordTest, BytesPastTheTopEndInAnErrorAndThoseBeforeStayStored) {
    EXPECT_EQ(errorIn(record(0xFFFE, {1, 2, 3, 4})), subscriptError);
    EXPECT_EQ(m.mem[0xFFFE], 1);
    EXPECT_EQ(m.mem[0xFFFF], 2);
    EXPECT_EQ(m.mem[0x10000], 3) << "the byte for 10000 lands in the mirror";
    EXPECT_EQ(m.mem[0x10001], 0);
    EXPECT_EQ(m.mem[0], 0);
}

TEST_F(HexRecordTest, BytesUpToTheTopAreStored) {
    EXPECT_EQ(read(record(0xFFFE, {1, 2})), RecordCode::stored);
    EXPECT_EQ(m.mem[0xFFFF], 2);
}

TEST_F(HexRecordTest, TheMirrorIsRefreshedAfterADataRecord) {
    EXPECT_EQ(read(record(0, {0x3E, 0x12})), RecordCode::stored);
    EXPECT_EQ(m.mem[0x10000], 0x3E);
    EXPECT_EQ(m.mem[0x10001], 0x12);
    m.mem[0] = 0x77;
    EXPECT_EQ(read(":0000000001"), RecordCode::badChecksum);
    EXPECT_EQ(m.mem[0x10000], 0x77) << "whatever the checksum";
    m.mem[0] = 0x78;
    EXPECT_EQ(read(endLine), RecordCode::endRecord);
    EXPECT_EQ(m.mem[0x10000], 0x77) << "not after an end record";
}

TEST_F(HexRecordTest, TheLineIsConsumed) {
    std::string data = ":03010000AABBCCCB";
    extlinfic(data, m, host);
    EXPECT_EQ(data, "AABBCC");
    std::string end = endLine;
    extlinfic(end, m, host);
    EXPECT_EQ(end, "FF");
    std::string other = "hello";
    extlinfic(other, m, host);
    EXPECT_EQ(other, "hello");
}

TEST_F(HexRecordTest, RegistersAndPcAreNotTouched) {
    m.A = 1;
    m.PC = 0x1234;
    const Registers before = m;
    read(record(0x100, {1, 2, 3}));
    EXPECT_EQ(static_cast<Registers&>(m), before);
}

TEST_F(HexRecordTest, CodesHaveTheirNumbers) {
    EXPECT_EQ(static_cast<int>(RecordCode::stored), 0);
    EXPECT_EQ(static_cast<int>(RecordCode::formatError), 1);
    EXPECT_EQ(static_cast<int>(RecordCode::badChecksum), 2);
    EXPECT_EQ(static_cast<int>(RecordCode::badOperation), 3);
    EXPECT_EQ(static_cast<int>(RecordCode::badAddress), 4);
    EXPECT_EQ(static_cast<int>(RecordCode::endRecord), 5);
}

}  // namespace
}  // namespace tavinor::test
