#include "transport/smbios/smbios_entry_point.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "support/smbios_builder.h"

namespace {

using test_support::AnSmbiosTable;
using Vantix::transport::ReadSmbiosEntryPoint;
using Vantix::transport::ReadSmbiosTable;

std::string Balanced(std::string bytes, std::size_t covered) {
    bytes.at(4) = 0;
    unsigned sum = 0;
    for (std::size_t i = 0; i < covered; ++i) sum += static_cast<std::uint8_t>(bytes.at(i));
    bytes.at(4) = static_cast<char>(256 - sum % 256);
    return bytes;
}

// The older form: 0x1f bytes, a table of `table_bytes` with `structures`.
std::string OlderEntryPoint(int table_bytes, int structures, int told_length = 0x1f) {
    std::string bytes(0x1f, '\0');
    bytes.replace(0, 4, "_SM_");
    bytes.at(5) = static_cast<char>(told_length);
    bytes.at(6) = 2;
    bytes.at(7) = 8;
    bytes.replace(0x10, 5, "_DMI_");
    bytes.at(0x16) = static_cast<char>(table_bytes);
    bytes.at(0x1c) = static_cast<char>(structures);
    return Balanced(bytes, static_cast<std::size_t>(told_length));
}

TEST(SmbiosEntryPointTest, NewerFormTellsVersionAndLength) {
    const auto entry = ReadSmbiosEntryPoint(AnSmbiosTable::EntryPoint(0x12345));
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->major_version, 3);
    EXPECT_EQ(entry->minor_version, 5);
    EXPECT_EQ(entry->table_bytes, 0x12345u);
}

TEST(SmbiosEntryPointTest, OlderFormTellsTheNumberOfStructuresToo) {
    const auto entry = ReadSmbiosEntryPoint(OlderEntryPoint(100, 7));
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->major_version, 2);
    EXPECT_EQ(entry->minor_version, 8);
    EXPECT_EQ(entry->table_bytes, 100u);
    EXPECT_EQ(entry->structures, 7u);
}

TEST(SmbiosEntryPointTest, LengthToldOneTooShortIsAccepted) {
    EXPECT_TRUE(ReadSmbiosEntryPoint(OlderEntryPoint(100, 7, 0x1e)).has_value());
}

TEST(SmbiosEntryPointTest, WrongChecksumShortOrForeignBytesAreNone) {
    std::string wrong = AnSmbiosTable::EntryPoint(10);
    ++wrong.at(0x10);
    const std::string whole = AnSmbiosTable::EntryPoint(10);
    for (const std::string& bytes :
         {wrong, whole.substr(0, 0x17), std::string("_SM3_"), std::string("_SM_"), std::string(),
          std::string(64, '\0'), OlderEntryPoint(1, 1).substr(0, 20)}) {
        EXPECT_FALSE(ReadSmbiosEntryPoint(bytes).has_value()) << bytes.size();
    }
}

TEST(SmbiosEntryPointTest, TableIsReadWithinItsToldLength) {
    const std::string first = test_support::AnSmbiosStructure(1, 8).Bytes();
    const std::string table = first + first;
    EXPECT_EQ(ReadSmbiosTable(table, std::string_view()).size(), 2u);
    EXPECT_EQ(ReadSmbiosTable(table, AnSmbiosTable::EntryPoint(first.size())).size(), 1u);
}

TEST(SmbiosEntryPointTest, TableIsReadWithinItsToldNumberOfStructures) {
    const std::string first = test_support::AnSmbiosStructure(1, 8).Bytes();
    EXPECT_EQ(ReadSmbiosTable(first + first, OlderEntryPoint(100, 1)).size(), 1u);
}

}  // namespace
