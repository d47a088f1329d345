#include "platform/pmem/nfit_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "memory_device.h"
#include "support/smbios_builder.h"

namespace Vantix::pmem {
namespace {

using test_support::AnSmbiosTable;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string Number(std::uint32_t number, std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xffU);
    return text;
}

std::string Structure(std::uint32_t type, const std::string& body) {
    return Number(type, 2) + Number(static_cast<std::uint32_t>(body.size() + 4), 2) + body;
}

std::string Mapping(std::uint32_t handle, std::uint32_t physical_id, std::uint32_t region) {
    return Structure(1, Number(handle, 4) + Number(physical_id, 2) + Number(0, 4) +
                            Number(region, 2) + std::string(32, '\0'));
}

/// Ids and serial number as bytes in the order in which the module has them.
std::string Region(std::uint32_t index, const std::string& serial = "\x12\x34\xab\xcd") {
    return Structure(4, Number(index, 2) + "\x89\x80" + "\x09\x7b" + std::string(1, '\0') + "\x18" +
                            std::string(12, '\0') + serial + std::string(4, '\0'));
}

std::string Table(const std::string& structures) {
    return "NFIT" + Number(static_cast<std::uint32_t>(40 + structures.size()), 4) +
           std::string(32, '\0') + structures;
}

auto Smbios(int handle) {
    return transport::ReadSmbiosTable(AnSmbiosTable().Add(MemoryDevice(handle)).Bytes(), 100);
}

TEST(NfitReaderTest, ModuleHasRevisionAndSocketFromSmbios) {
    const auto list =
        ReadNfitModules(Table(Mapping(0x1001, 0x1100, 1) + Region(1)), Smbios(0x1100));
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].VersionString, "01.02.00.5355");
    EXPECT_EQ(list[0].Name, "EXPM128G");
    EXPECT_EQ(list[0].SoftwareID, "EXPM128G");
    EXPECT_EQ(list[0].SerialNumber, "MSER0001");
    EXPECT_EQ(list[0].Manufacturer, "Example Maker");
    EXPECT_EQ(list[0].InstanceID, "nvdimm1001");
    EXPECT_EQ(list[0].AssociatedAdapterSlot, "4");
    EXPECT_EQ(list[0].SlotType, 4);
}

TEST(NfitReaderTest, TableAloneGivesIdsAndSerialNumberButNoRevision) {
    const auto list = ReadNfitModules(Table(Mapping(1, 0x1100, 1) + Region(1)), Smbios(0x1101));
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].SoftwareID, "8980-097b");
    EXPECT_EQ(list[0].SerialNumber, "1234abcd");
    EXPECT_EQ(list[0].Name, "nvdimm1");
    EXPECT_EQ(list[0].VersionString, "");
    EXPECT_EQ(list[0].Description, "Persistent memory module");
}

TEST(NfitReaderTest, ModuleOfSeveralRangesIsToldOnceAndByItsHandlesOrder) {
    const std::string table =
        Table(Structure(0, std::string(52, 'x')) + Mapping(0x1001, 2, 2) + Mapping(0x0001, 1, 1) +
              Mapping(0x1001, 2, 2) + Region(1) + Region(2));
    std::vector<std::string> names;
    for (const auto& module : ReadNfitModules(table, {})) names.push_back(module.InstanceID);
    EXPECT_THAT(names, ElementsAre("nvdimm1", "nvdimm1001"));
}

TEST(NfitReaderTest, ModuleWithoutItsRegionIsListedByItsName) {
    const auto list = ReadNfitModules(Table(Mapping(1, 1, 7) + Region(1)), {});
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].SoftwareID, "nvdimm1");
    EXPECT_EQ(list[0].SerialNumber, "");
}

TEST(NfitReaderTest, SerialNumberOfZerosIsNone) {
    const auto list =
        ReadNfitModules(Table(Mapping(1, 1, 1) + Region(1, std::string(4, '\0'))), {});
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].SerialNumber, "");
}

TEST(NfitReaderTest, TableCutAnywhereKeepsWhatStoodBefore) {
    const std::string table = Table(Mapping(1, 1, 1) + Region(1) + Mapping(2, 2, 1));
    for (std::size_t length = 0; length <= table.size(); ++length) {
        const auto list = ReadNfitModules(std::string_view(table).substr(0, length), {});
        const std::size_t expected = length == table.size() ? 2 : (length >= 88 ? 1 : 0);
        EXPECT_THAT(list, SizeIs(expected)) << length;
    }
}

TEST(NfitReaderTest, LengthsThatLieEndTheReading) {
    std::string table = Table(Mapping(1, 1, 1) + Mapping(2, 2, 1));
    for (const std::uint32_t length : {0U, 3U, 0xffffU}) {
        std::string hostile = table;
        hostile.replace(90, 2, Number(length, 2));
        EXPECT_THAT(ReadNfitModules(hostile, {}), SizeIs(1)) << length;
    }
    for (const std::uint32_t length : {0U, 39U, 40U}) {
        table.replace(4, 4, Number(length, 4));
        EXPECT_THAT(ReadNfitModules(table, {}), IsEmpty()) << length;
    }
    table.replace(4, 4, Number(0xffffffff, 4));
    EXPECT_THAT(ReadNfitModules(table, {}), SizeIs(2));
}

TEST(NfitReaderTest, ShortStructuresAndOtherTablesTellNothing) {
    EXPECT_THAT(ReadNfitModules(Table(Structure(1, Number(1, 4))), {}), IsEmpty());
    const auto list = ReadNfitModules(Table(Mapping(1, 1, 1) + Structure(4, Number(1, 2))), {});
    ASSERT_THAT(list, SizeIs(1));
    EXPECT_EQ(list[0].SoftwareID, "nvdimm1");
    std::string other = Table(Mapping(1, 1, 1));
    other.replace(0, 4, "SRAT");
    EXPECT_THAT(ReadNfitModules(other, {}), IsEmpty());
}

}  // namespace
}  // namespace Vantix::pmem
