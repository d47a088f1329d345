#include "platform/estimate/duration_table.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Vantix {
namespace {

DurationTable Read(const std::string& text) {
    std::istringstream stream(text);
    return DurationTable::Read(stream);
}

std::string Written(const DurationTable& table) {
    std::ostringstream stream;
    table.Write(stream);
    return stream.str();
}

TEST(DurationTableTest, EntriesAreFoundByTheirWholeKey) {
    const DurationTable table = Read("42 None_None/EX 1\n7 None_None/EX\n");
    EXPECT_EQ(table.Find("None_None/EX 1"), 42);
    EXPECT_EQ(table.Find("None_None/EX"), 7);
    EXPECT_EQ(table.Find("None_None"), std::nullopt);
}

TEST(DurationTableTest, DamagedLinesAreSkipped) {
    const DurationTable table =
        Read("x 1\n\n12\n-5 key\n0 key\n99999999999999 key\n5key\n999999 key\n\xFF\xFE\n8 good\n");
    EXPECT_EQ(table.Size(), 1U);
    EXPECT_EQ(table.Find("good"), 8);
}

TEST(DurationTableTest, WindowsLineEndsAreTolerated) {
    EXPECT_EQ(Read("8 key\r\n").Find("key"), 8);
}

TEST(DurationTableTest, WhatWasWrittenIsReadBack) {
    DurationTable table;
    table.Remember("first", 10);
    table.Remember("second key", 20);
    EXPECT_EQ(Written(table), "10 first\n20 second key\n");
    EXPECT_EQ(Read(Written(table)).Find("second key"), 20);
}

TEST(DurationTableTest, NewerDurationReplacesTheOlder) {
    DurationTable table = Read("10 a\n20 b\n");
    table.Remember("a", 30);
    EXPECT_EQ(Written(table), "20 b\n30 a\n");
}

TEST(DurationTableTest, OldestEntryMakesRoom) {
    DurationTable table;
    for (std::size_t i = 0; i <= DurationTable::kMostEntries; ++i) {
        table.Remember("key" + std::to_string(i), 1);
    }
    EXPECT_EQ(table.Size(), DurationTable::kMostEntries);
    EXPECT_EQ(table.Find("key0"), std::nullopt);
    EXPECT_EQ(table.Find("key1"), 1);
}

TEST(DurationTableTest, LineEndsInAKeyCannotMakeEntries) {
    DurationTable table;
    table.Remember("a\n5 forged", 10);
    EXPECT_EQ(Written(table), "10 a 5 forged\n");
    EXPECT_EQ(table.Find("a\n5 forged"), 10);
}

TEST(DurationTableTest, EmptyKeysAndImpossibleDurationsAreIgnored) {
    DurationTable table;
    table.Remember(" ", 5);
    table.Remember("key", 0);
    table.Remember("key", DurationTable::kLongestSeconds + 1);
    EXPECT_EQ(table.Size(), 0U);
}

}  // namespace
}  // namespace Vantix
