#include "platform/pmem/nvdimm_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "memory_device.h"
#include "support/smbios_builder.h"
#include "support/system_tree.h"
#include "support/unprivileged_user.h"

namespace Vantix::pmem {
namespace {

using test_support::AnSmbiosStructure;
using test_support::AnSmbiosTable;
using test_support::SystemTree;
using testing::ElementsAre;
using testing::IsEmpty;
using transport::SystemRoot;

const std::string kNmem0 = "/sys/bus/nd/devices/nmem0/";
const std::string kTable = "/sys/firmware/dmi/tables/DMI";

class NvdimmReaderTest : public testing::Test {
  protected:
    void Module() {
        tree_.File(kNmem0 + "nfit/vendor", "0x8980\n")
            .File(kNmem0 + "nfit/device", "0x097b\n")
            .File(kNmem0 + "nfit/rev_id", "0x0018\n")
            .File(kNmem0 + "nfit/serial", "0x1234abcd\n")
            .File(kNmem0 + "nfit/phys_id", "0x1100\n");
    }
    auto Read() { return ReadNvdimms(SystemRoot(tree_.Root())); }

    SystemTree tree_;
};

TEST_F(NvdimmReaderTest, FirmwareOfTheMachineTellsRevisionAndSocket) {
    Module();
    tree_.File(kTable, AnSmbiosTable().Add(MemoryDevice(0x1100)).Bytes());
    const auto list = Read();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].VersionString, "01.02.00.5355");
    EXPECT_EQ(list[0].Name, "EXPM128G");
    EXPECT_EQ(list[0].SoftwareID, "EXPM128G");
    EXPECT_EQ(list[0].PartNumber, "EXPM128G");
    EXPECT_EQ(list[0].SerialNumber, "MSER0001");
    EXPECT_EQ(list[0].Manufacturer, "Example Maker");
    EXPECT_EQ(list[0].AssociatedAdapterSlot, "4");
    EXPECT_EQ(list[0].SlotType, 4);
}

TEST_F(NvdimmReaderTest, RecordOfAnotherModuleIsNotTaken) {
    Module();
    tree_.File(kTable, AnSmbiosTable().Add(MemoryDevice(0x1101)).Bytes());
    EXPECT_EQ(Read()[0].VersionString, "");
    EXPECT_EQ(Read()[0].SerialNumber, "1234abcd");
}

TEST_F(NvdimmReaderTest, KernelAloneGivesIdsAndSerialNumberButNoRevision) {
    Module();
    const auto list = Read();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].Name, "nmem0");
    EXPECT_EQ(list[0].SoftwareID, "8980-097b");
    EXPECT_EQ(list[0].PartNumber, "");
    EXPECT_EQ(list[0].SerialNumber, "1234abcd");
    EXPECT_EQ(list[0].VersionString, "");
    EXPECT_EQ(list[0].InstanceID, "nmem0");
    EXPECT_EQ(list[0].Description, "Persistent memory module");
    EXPECT_EQ(list[0].Classifications, "10");
    EXPECT_EQ(list[0].IsPLDMUpdateSupported, "0");
    EXPECT_EQ(list[0].AssociatedAdapterSlot, "");
    EXPECT_EQ(list[0].SlotType, 4);
}

TEST_F(NvdimmReaderTest, ModuleOfWhichNothingIsKnownIsListedByItsName) {
    tree_.Folder(kNmem0);
    const auto list = Read();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].SoftwareID, "nmem0");
    EXPECT_EQ(list[0].SerialNumber, "");
}

TEST_F(NvdimmReaderTest, PlaceholdersOfTheFirmwareAreUnknown) {
    Module();
    AnSmbiosStructure device(17, 0x54);
    device.Word(2, 0x1100).Text(0x17, "Not Specified").Text(0x1a, "Not Specified");
    tree_.File(kTable, AnSmbiosTable().Add(device.Text(0x2b, "N/A")).Bytes());
    EXPECT_EQ(Read()[0].VersionString, "");
    EXPECT_EQ(Read()[0].Manufacturer, "");
    EXPECT_EQ(Read()[0].SoftwareID, "8980-097b");
}

TEST_F(NvdimmReaderTest, CxlModuleHasTheRevisionOfItsMemoryDevice) {
    tree_.File(kNmem0 + "cxl/provider", "pmem3\n")
        .File("/sys/bus/cxl/devices/mem3/firmware_version", "BWFW VERSION 00\n")
        .File("/sys/bus/cxl/devices/mem3/serial", "0xa5b6c7d8\n");
    EXPECT_EQ(Read()[0].VersionString, "BWFW VERSION 00");
    EXPECT_EQ(Read()[0].SerialNumber, "a5b6c7d8");
}

TEST_F(NvdimmReaderTest, CxlProviderOfAnotherFormLeadsNowhere) {
    tree_.File("/sys/bus/cxl/devices/mem3/firmware_version", "1.0\n");
    for (const char* provider : {"pmem", "pmem3x", "../pmem3", "mem3", ""}) {
        tree_.File(kNmem0 + "cxl/provider", provider);
        EXPECT_EQ(Read()[0].VersionString, "") << provider;
    }
}

TEST_F(NvdimmReaderTest, OnlyModulesAreListedAndInNaturalOrder) {
    for (const char* name :
         {"nmem10", "nmem2", "ndbus0", "region0", "namespace0.0", "nmem", "nmemx"}) {
        tree_.Folder(std::string("/sys/bus/nd/devices/") + name);
    }
    std::vector<std::string> names;
    for (const auto& identity : Read()) names.push_back(identity.InstanceID);
    EXPECT_THAT(names, ElementsAre("nmem2", "nmem10"));
}

TEST_F(NvdimmReaderTest, DamagedAttributesCostOnlyThemselves) {
    Module();
    tree_.File(kNmem0 + "nfit/phys_id", "0x123456789\n")
        .File(kNmem0 + "nfit/vendor", std::string(100000, '9'))
        .File(kNmem0 + "nfit/device", "0x\xff\xff");
    const auto list = Read();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].SoftwareID, "nmem0");
    EXPECT_EQ(list[0].SerialNumber, "1234abcd");
}

TEST_F(NvdimmReaderTest, CircularAndDanglingEntriesAreNoModules) {
    tree_.Link("/sys/bus/nd/devices/nmem0", "nmem0").Link("/sys/bus/nd/devices/nmem1", "gone");
    EXPECT_THAT(Read(), IsEmpty());
}

TEST_F(NvdimmReaderTest, TableForRootOnlyIsListedAsDenied) {
    Module();
    tree_.File(kTable, AnSmbiosTable().Add(MemoryDevice(0x1100)).Bytes());
    tree_.Forbid(kTable);
    const test_support::UnprivilegedUser user(tree_.Root());
    const SystemRoot root(tree_.Root());
    EXPECT_EQ(ReadNvdimms(root)[0].VersionString, "");
    EXPECT_THAT(root.DeniedPaths(), ElementsAre(kTable));
}

TEST_F(NvdimmReaderTest, MachineWithoutModulesHasNoneAndItsTableStaysUnread) {
    tree_.Folder("/sys/bus/nd/devices");
    tree_.File(kTable, "x");
    tree_.Forbid(kTable);
    const test_support::UnprivilegedUser user(tree_.Root());
    const SystemRoot root(tree_.Root());
    EXPECT_THAT(ReadNvdimms(root), IsEmpty());
    EXPECT_THAT(root.DeniedPaths(), IsEmpty());
}

}  // namespace
}  // namespace Vantix::pmem
