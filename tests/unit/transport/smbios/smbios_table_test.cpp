#include "transport/smbios/smbios_table.h"

#include <gtest/gtest.h>

#include <string>

#include "support/smbios_builder.h"

namespace {

using test_support::AnSmbiosStructure;
using test_support::AnSmbiosTable;
using Vantix::transport::ReadSmbiosTable;
using Vantix::transport::SmbiosStructures;

SmbiosStructures ReadOne(const AnSmbiosStructure& structure) {
    return ReadSmbiosTable(structure.Bytes());
}

TEST(SmbiosTableTest, StructureTellsTypeHandleNumbersAndTexts) {
    const auto all =
        ReadOne(AnSmbiosStructure(9, 12).Word(2, 0x1234).Word(8, 0xbeef).Text(4, "Slot 1"));
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].type, 9);
    EXPECT_EQ(all[0].handle, 0x1234);
    EXPECT_EQ(all[0].Word(8), 0xbeef);
    EXPECT_EQ(all[0].Byte(9), 0xbe);
    EXPECT_EQ(all[0].Text(4), "Slot 1");
}

TEST(SmbiosTableTest, StructuresWithAndWithoutStringsFollowEachOther) {
    const auto all = ReadSmbiosTable(AnSmbiosTable()
                                         .Add(AnSmbiosStructure(1, 8).Text(4, "a").Text(5, "b"))
                                         .Add(AnSmbiosStructure(2, 8))
                                         .Add(AnSmbiosStructure(3, 8).Text(4, "c"))
                                         .Bytes());
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0].strings, (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(all[1].strings.empty());
    EXPECT_EQ(all[2].Text(4), "c");
}

TEST(SmbiosTableTest, FieldsBehindTheFormattedAreaAreAbsent) {
    const auto all = ReadOne(AnSmbiosStructure(1, 6).Text(4, "a"));
    ASSERT_EQ(all.size(), 1u);
    EXPECT_TRUE(all[0].Byte(5).has_value());
    EXPECT_FALSE(all[0].Byte(6).has_value());
    EXPECT_FALSE(all[0].Word(5).has_value());
    EXPECT_EQ(all[0].Text(6), "");
    EXPECT_EQ(all[0].Slice(4, 100).size(), 2u);
    EXPECT_TRUE(all[0].Slice(400, 1).empty());
}

TEST(SmbiosTableTest, TextNumbersWithoutAStringAreEmpty) {
    const auto all = ReadOne(AnSmbiosStructure(1, 8).Text(4, "only").Byte(5, 2).Byte(6, 255));
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].Text(4), "only");
    EXPECT_EQ(all[0].Text(5), "");
    EXPECT_EQ(all[0].Text(6), "");
    EXPECT_EQ(all[0].Text(7), "");
}

TEST(SmbiosTableTest, TextsAreClean) {
    const auto all = ReadOne(AnSmbiosStructure(1, 8).Text(4, " Rack\x01\xff "));
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].Text(4), "Rack \xEF\xBF\xBD");
}

TEST(SmbiosTableTest, NothingBehindTheEndOfTheTableIsRead) {
    const std::string table =
        AnSmbiosTable().System({"Maker"}).Bytes() + AnSmbiosStructure(2, 8).Bytes();
    EXPECT_EQ(ReadSmbiosTable(table).size(), 1u);
}

TEST(SmbiosTableTest, TooShortALengthEndsTheReading) {
    const std::string damaged = AnSmbiosTable().System({"Maker"}).Bytes().substr(0, 0x1b + 7) +
                                std::string("\x02\x03\0\0\0\0\x03\x08\0\0\0\0\0\0\0\0", 16);
    EXPECT_EQ(ReadSmbiosTable(damaged).size(), 1u);
}

TEST(SmbiosTableTest, LengthBeyondTheTableEndsTheReading) {
    const std::string bytes = AnSmbiosStructure(1, 0x1b).Bytes();
    EXPECT_TRUE(ReadSmbiosTable(bytes.substr(0, 0x1a)).empty());
    EXPECT_TRUE(ReadSmbiosTable("").empty());
    EXPECT_TRUE(ReadSmbiosTable(std::string("\x01\x04\0", 3)).empty());
}

TEST(SmbiosTableTest, StructureCutInItsStringsKeepsTheWholeOnes) {
    const std::string bytes = AnSmbiosStructure(1, 8).Text(4, "Maker").Text(5, "Product").Bytes();
    const auto all = ReadSmbiosTable(bytes.substr(0, bytes.size() - 4));
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].Text(4), "Maker");
    EXPECT_EQ(all[0].Text(5), "");
}

TEST(SmbiosTableTest, AtMostTheWantedNumberIsRead) {
    AnSmbiosTable table;
    for (int i = 0; i < 5; ++i) table.Baseboard({"Maker"});
    EXPECT_EQ(ReadSmbiosTable(table.Bytes(), 2).size(), 2u);
    EXPECT_TRUE(ReadSmbiosTable(table.Bytes(), 0).empty());
}

TEST(SmbiosTableTest, HugeTableOfTheSmallestStructuresEnds) {
    std::string table;
    for (int i = 0; i < 100000; ++i) table += AnSmbiosStructure(126, 4).Bytes();
    EXPECT_EQ(ReadSmbiosTable(table).size(), Vantix::transport::kMostSmbiosStructures);
}

}  // namespace
