#include "platform/redfish/pmem_reader.h"

#include <gtest/gtest.h>

#include "platform/redfish/slot_rules.h"
#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

std::vector<VantixOptions::SoftwareIdentity_> Read(const std::string& json) {
    ServerSnapshot snapshot;
    snapshot.memory = {MakeResource("/redfish/v1/Systems/1/Memory/D1", json)};
    return ReadPersistentMemory(snapshot);
}

TEST(PmemReaderTest, PersistentModuleIsListedWithItsPlace) {
    const auto list = Read(R"({"Id":"D1","Name":"DIMM 1","MemoryType":"IntelOptane","Model":"EX-PM",
        "PartNumber":"EXPM1","SerialNumber":"EXS1","Manufacturer":"Example",
        "FirmwareRevision":"01.02.03","DeviceLocator":"PROC 1 DIMM 12"})");
    ASSERT_EQ(1U, list.size());
    EXPECT_EQ("EX-PM", list[0].Name);
    EXPECT_EQ("EXPM1", list[0].SoftwareID);
    EXPECT_EQ("EXPM1", list[0].PartNumber);
    EXPECT_EQ("EXS1", list[0].SerialNumber);
    EXPECT_EQ("01.02.03", list[0].VersionString);
    EXPECT_EQ("D1", list[0].InstanceID);
    EXPECT_EQ("10", list[0].Classifications);
    EXPECT_EQ("12", list[0].AssociatedAdapterSlot);
    EXPECT_EQ(kSlotMemory, list[0].SlotType);
}

TEST(PmemReaderTest, EachSignOfPersistenceCounts) {
    for (const char* json :
         {R"({"MemoryType":"NVDIMM_N"})", R"({"MemoryType":"NVDIMM_P"})",
          R"({"MemoryDeviceType":"DDR4 NVDIMM-N"})", R"({"MemoryMedia":["Intel3DXPoint"]})",
          R"({"MemoryMedia":"Intel3DXPoint"})",
          R"({"OperatingMemoryModes":["Volatile","PMEM"]})"}) {
        EXPECT_EQ(1U, Read(json).size()) << json;
    }
}

TEST(PmemReaderTest, VolatileAbsentAndBrokenModulesAreNotListed) {
    for (const char* json :
         {R"({"MemoryType":"DRAM","MemoryMedia":["DRAM"],"OperatingMemoryModes":["Volatile"]})",
          R"({"MemoryType":"IntelOptane","Status":{"State":"Absent"}})", "{}",
          R"({"error":{"code":"x"}})", R"({"MemoryType":null,"MemoryMedia":7})"}) {
        EXPECT_TRUE(Read(json).empty()) << json;
    }
}

TEST(PmemReaderTest, SlotComesFromLocationBeforeLocatorBeforeNumbers) {
    const auto slot = [](const std::string& fields) {
        return Read(R"({"MemoryType":"NVDIMM_N")" + fields + "}").at(0).AssociatedAdapterSlot;
    };
    EXPECT_EQ("3", slot(R"(,"Location":{"PartLocation":{"ServiceLabel":"DIMM 3"}},
                           "DeviceLocator":"DIMM 4")"));
    EXPECT_EQ("4", slot(R"(,"DeviceLocator":"DIMM 4","MemoryLocation":{"Slot":5})"));
    EXPECT_EQ("5", slot(R"(,"MemoryLocation":{"Slot":5})"));
    EXPECT_EQ("", slot(""));
}

TEST(PmemReaderTest, MissingRevisionStaysEmpty) {
    EXPECT_EQ("", Read(R"({"MemoryType":"NVDIMM_N"})").at(0).VersionString);
}

}  // namespace
}  // namespace Vantix::redfish
