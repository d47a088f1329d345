#include "platform/local/machine_identity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "support/smbios_builder.h"
#include "support/system_tree.h"
#include "support/unprivileged_user.h"

namespace {

using test_support::AnSmbiosTable;
using test_support::SystemTree;
using test_support::UnprivilegedUser;
using testing::HasSubstr;
using Vantix::local::ReadFirmwareVersion;
using Vantix::local::ReadMachineIdentity;
using Vantix::local::WhyUnknown;
using Vantix::transport::SystemRoot;

const std::string kId = "/sys/class/dmi/id/";
const std::string kTable = "/sys/firmware/dmi/tables/DMI";

std::string TypeOf(const SystemTree& tree) {
    return ReadMachineIdentity(SystemRoot(tree.Root())).machine_type;
}

std::string SerialOf(const SystemTree& tree) {
    return ReadMachineIdentity(SystemRoot(tree.Root())).serial_number;
}

std::string VersionOf(const SystemTree& tree) {
    return ReadFirmwareVersion(SystemRoot(tree.Root()));
}

TEST(MachineIdentityTest, ProductNameIsTheMachineType) {
    SystemTree tree;
    tree.File(kId + "product_name", "Rack 1 \n").File(kId + "product_sku", "RS-01\n");
    tree.File(kId + "product_version", "Marketing Name\n");
    EXPECT_EQ(TypeOf(tree), "Rack 1");
}

TEST(MachineIdentityTest, SkuAndThenTheBoardStandInForTheProductName) {
    SystemTree tree;
    tree.File(kId + "product_name", "System Product Name\n");
    tree.File(kId + "product_sku", "RS-01\n").File(kId + "board_name", "Board 7\n");
    EXPECT_EQ(TypeOf(tree), "RS-01");
    tree.File(kId + "product_sku", "To be filled by O.E.M.\n");
    EXPECT_EQ(TypeOf(tree), "Board 7");
}

TEST(MachineIdentityTest, ProductSerialGoesBeforeTheBoards) {
    SystemTree tree;
    tree.File(kId + "product_serial", "SER12345\n").File(kId + "board_serial", "BRD12345\n");
    EXPECT_EQ(SerialOf(tree), "SER12345");
}

TEST(MachineIdentityTest, BoardSerialStandsInButNeverTheChassis) {
    SystemTree tree;
    tree.File(kId + "product_serial", "Default string\n").File(kId + "board_serial", "BRD12345\n");
    tree.File(kId + "chassis_serial", "ENCLOSURE1\n");
    EXPECT_EQ(SerialOf(tree), "BRD12345");
    tree.File(kId + "board_serial", "\n");
    EXPECT_EQ(SerialOf(tree), "");
}

class PlaceholderTest : public testing::TestWithParam<const char*> {};

TEST_P(PlaceholderTest, CountsAsUnknown) {
    SystemTree tree;
    for (const char* name : {"product_name", "product_serial", "bios_version"}) {
        tree.File(kId + name, std::string(GetParam()) + "\n");
    }
    EXPECT_EQ(TypeOf(tree), "");
    EXPECT_EQ(SerialOf(tree), "");
    EXPECT_EQ(VersionOf(tree), "");
}

INSTANTIATE_TEST_SUITE_P(Texts, PlaceholderTest,
                         testing::Values("To be filled by O.E.M.", "TO BE FILLED BY O.E.M.",
                                         "Default string", "default String", "Not Specified",
                                         "System Serial Number", "0123456789", "123456789",
                                         "XXXXXXXX", "0000000000", "........", "N/A", "None",
                                         "Unknown", " ", ""));

TEST(MachineIdentityTest, TableStandsInWhereTheKernelHasNoFiles) {
    SystemTree tree;
    tree.File(kTable, AnSmbiosTable()
                          .Bios("ExampleBIOS", "EX1.02")
                          .System({"Example Maker", "Rack 1", "01", "Default string"}, "RS-01")
                          .Baseboard({"Example Maker", "Board 7", "A1", "BRD12345"})
                          .Chassis("Example Maker", "ENCLOSURE1")
                          .Bytes());
    EXPECT_EQ(TypeOf(tree), "Rack 1");
    EXPECT_EQ(SerialOf(tree), "BRD12345");
    EXPECT_EQ(VersionOf(tree), "EX1.02");
    EXPECT_TRUE(ReadMachineIdentity(SystemRoot(tree.Root())).is_told);
}

TEST(MachineIdentityTest, FilesGoBeforeTheTable) {
    SystemTree tree;
    tree.File(kTable, AnSmbiosTable().Bios("ExampleBIOS", "OLD").Bytes());
    tree.File(kId + "bios_version", "EX1.02\n");
    EXPECT_EQ(VersionOf(tree), "EX1.02");
}

TEST(MachineIdentityTest, ForbiddenSerialCostsOnlyItself) {
    SystemTree tree;
    for (const char* name : {"product_name", "product_serial", "board_serial", "bios_version"}) {
        tree.File(kId + name, "EX-1\n");
    }
    tree.Forbid(kId + "product_serial");
    tree.Forbid(kId + "board_serial");
    const UnprivilegedUser user(tree.Root());
    const SystemRoot root(tree.Root());
    const auto identity = ReadMachineIdentity(root);
    EXPECT_EQ(identity.machine_type, "EX-1");
    EXPECT_EQ(identity.serial_number, "");
    EXPECT_EQ(ReadFirmwareVersion(root), "EX-1");
    EXPECT_EQ(root.DeniedPaths(),
              (std::vector<std::string>{kId + "board_serial", kId + "product_serial"}));
}

TEST(MachineIdentityTest, TableIsNotTriedForWhatIsKnown) {
    SystemTree tree;
    tree.File(kTable, AnSmbiosTable().Bytes());
    tree.File(kId + "product_name", "Rack 1\n").File(kId + "product_serial", "SER12345\n");
    tree.File(kId + "bios_version", "EX1.02\n");
    tree.Forbid(kTable);
    const UnprivilegedUser user(tree.Root());
    const SystemRoot root(tree.Root());
    EXPECT_EQ(ReadMachineIdentity(root).machine_type, "Rack 1");
    EXPECT_EQ(ReadFirmwareVersion(root), "EX1.02");
    EXPECT_TRUE(root.DeniedPaths().empty());
}

TEST(MachineIdentityTest, DeviceTreeTellsWhereThereIsNoSmbios) {
    SystemTree tree;
    tree.File("/sys/firmware/devicetree/base/model", std::string("Example Board 4\0", 16));
    tree.File("/sys/firmware/devicetree/base/serial-number", std::string("DT123\0", 6));
    tree.File("/sys/firmware/devicetree/base/chosen/u-boot,version", "2024.01\n");
    EXPECT_EQ(TypeOf(tree), "Example Board 4");
    EXPECT_EQ(SerialOf(tree), "DT123");
    EXPECT_EQ(VersionOf(tree), "2024.01");
    EXPECT_TRUE(ReadMachineIdentity(SystemRoot(tree.Root())).is_told);
}

TEST(MachineIdentityTest, DeviceTreeIsFoundUnderProcToo) {
    SystemTree tree;
    tree.File("/proc/device-tree/model", "Example Board 4\n");
    EXPECT_EQ(TypeOf(tree), "Example Board 4");
}

TEST(MachineIdentityTest, DeviceTreeIsNotAskedWhereThereIsSmbios) {
    SystemTree tree;
    tree.File("/proc/device-tree/model", "Example Board 4\n");
    tree.File(kId + "product_name", "\n");
    EXPECT_EQ(TypeOf(tree), "");
}

TEST(MachineIdentityTest, ContainerTellsNothing) {
    const SystemTree tree = {};
    const SystemRoot root(tree.Root());
    EXPECT_FALSE(ReadMachineIdentity(root).is_told);
    EXPECT_EQ(ReadFirmwareVersion(root), "");
}

TEST(MachineIdentityTest, SentenceNamesTheReason) {
    SystemTree tree;
    const SystemRoot nothing(tree.Root());
    EXPECT_THAT(WhyUnknown(nothing, "machine type"),
                AllOf(HasSubstr("The machine type of this machine is not known"),
                      HasSubstr("neither SMBIOS nor a device tree")));
    tree.File(kId + "product_name", "\n");
    const SystemRoot silent(tree.Root());
    EXPECT_THAT(WhyUnknown(silent, "machine type"), HasSubstr("its firmware does not tell it"));
    silent.AddDenied(kTable);
    EXPECT_THAT(WhyUnknown(silent, "machine type"), HasSubstr("run the scan as root"));
}

TEST(MachineIdentityTest, HugeBinaryAndCircularEntriesAreHarmless) {
    SystemTree tree;
    tree.File(kId + "product_name", std::string(200000, 'x'));
    tree.File(kId + "product_serial", std::string("\xff\0\xfe", 3));
    tree.Link(kId + "bios_version", "bios_version").Folder(kId + "board_name");
    EXPECT_LE(TypeOf(tree).size(), SystemRoot::kMaxAttribute);
    EXPECT_EQ(SerialOf(tree), "\xEF\xBF\xBD");
    EXPECT_EQ(VersionOf(tree), "");
}

TEST(MachineIdentityTest, RecordedMachineTellsItself) {
    const char* environment = std::getenv("TARSEL_SHARED_MOCKUPS");
    const std::filesystem::path sets = environment ? environment : TARSEL_SHARED_MOCKUPS;
    const std::filesystem::path folder = sets / "sysfs-procfs";
    if (!std::filesystem::is_directory(folder)) {
        GTEST_SKIP() << "TARSEL_SHARED_MOCKUPS names no folder with sysfs-procfs";
    }
    const SystemRoot root(folder.string());
    const auto text = [&root](const char* name) { return root.ReadText(kId + name); };
    const auto identity = ReadMachineIdentity(root);
    EXPECT_FALSE(identity.machine_type.empty());
    EXPECT_EQ(identity.machine_type, text("product_name"));
    EXPECT_EQ(identity.serial_number, text("product_serial"));
    EXPECT_EQ(ReadFirmwareVersion(root), text("bios_version"));
}

}  // namespace
