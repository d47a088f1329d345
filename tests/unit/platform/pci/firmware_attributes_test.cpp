#include "platform/pci/firmware_attributes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/system_tree.h"

namespace {

using test_support::SystemTree;
using Vantix::pci::FirmwareVersionFromKernel;
using Vantix::pci::NetFirmwareQuery;
using Vantix::pci::StandsForNoVersion;
using Vantix::transport::SystemRoot;

constexpr const char* kDevice = "/sys/devices/pci0000:3b/0000:3b:00.0";

std::string Path(const std::string& below) {
    return std::string(kDevice) + "/" + below;
}

std::string VersionIn(const SystemTree& tree, const NetFirmwareQuery& query = {}) {
    const SystemRoot root(tree.Root());
    return FirmwareVersionFromKernel(root, kDevice, root.List(kDevice), query);
}

class FirmwareAttributeTest : public ::testing::TestWithParam<const char*> {};

TEST_P(FirmwareAttributeTest, VersionIsReadFromTheDriversAttribute) {
    SystemTree tree;
    tree.File(Path(GetParam()), "4.2.1\n");
    EXPECT_EQ(VersionIn(tree), "4.2.1");
}

INSTANTIATE_TEST_SUITE_P(
    Paths, FirmwareAttributeTest,
    ::testing::Values(
        "nvme/nvme0/firmware_rev", "infiniband/ex5_0/fw_ver", "host11/scsi_host/host11/version_fw",
        "host0/scsi_host/host0/firmware_version", "host0/scsi_host/host0/firmware_revision",
        "host0/scsi_host/host0/fw_version", "host0/scsi_host/host0/fwrev",
        "host0/scsi_host/host0/host_fw_version", "host0/scsi_host/host0/beiscsi_fw_ver",
        "host0/scsi_host/host0/hba_kernel_version", "host7/fc_host/host7/firmware_version",
        "mem0/firmware_version", "fw_version", "firmware_version", "vbios_version"));

TEST(FirmwareAttributesTest, DeviceWithoutAnyHasNoVersion) {
    SystemTree tree;
    tree.File(Path("vendor"), "0x1d0f").File(Path("version"), "9").Folder(Path("nvme"));
    EXPECT_EQ(VersionIn(tree), "");
}

TEST(FirmwareAttributesTest, FirstInstanceThatTellsOneDecides) {
    SystemTree tree;
    tree.File(Path("nvme/nvme10/firmware_rev"), "third");
    tree.File(Path("nvme/nvme2/firmware_rev"), "second");
    tree.File(Path("nvme/nvme1/firmware_rev"), "\n");
    EXPECT_EQ(VersionIn(tree), "second");
}

TEST(FirmwareAttributesTest, HostThatTellsNothingLeavesTheNextOne) {
    SystemTree tree;
    tree.File(Path("host1/scsi_host/host1/version_fw"), "N/A");
    tree.File(Path("host2/scsi_host/host2/version_fw"), "4.2.1");
    EXPECT_EQ(VersionIn(tree), "4.2.1");
}

TEST(FirmwareAttributesTest, FoldersOfOtherNamesAreNoHosts) {
    SystemTree tree;
    tree.File(Path("hostess/scsi_host/hostess/version_fw"), "1.0");
    tree.File(Path("host/scsi_host/host/version_fw"), "1.0");
    EXPECT_EQ(VersionIn(tree), "");
}

TEST(FirmwareAttributesTest, NetworkDriverIsAskedLast) {
    SystemTree tree;
    std::vector<std::string> asked;
    const NetFirmwareQuery query = [&asked](const std::string& interface) {
        asked.push_back(interface);
        return interface == "eth1" ? "9.0" : "N/A";
    };
    tree.Folder(Path("net/eth0")).Folder(Path("net/eth1")).Folder(Path("net/eth2"));
    EXPECT_EQ(VersionIn(tree, query), "9.0");
    EXPECT_EQ(asked, (std::vector<std::string>{"eth0", "eth1"}));
    tree.File(Path("infiniband/ex5_0/fw_ver"), "4.2.1");
    EXPECT_EQ(VersionIn(tree, query), "4.2.1");
    EXPECT_EQ(asked.size(), 2U);
}

TEST(FirmwareAttributesTest, WithoutInterfacesTheNetworkDriverIsNotAsked) {
    SystemTree tree;
    tree.Folder(kDevice);
    const NetFirmwareQuery query = [](const std::string&) { return "9.0"; };
    EXPECT_EQ(VersionIn(tree, query), "");
}

TEST(FirmwareAttributesTest, WordsForUnknownAreNoVersion) {
    for (const char* text : {"", "N/A", "n/a", "NA", "none", "Unknown", "0", "0.0.0", "0.0.0.0",
                             "-", "NULL", "Not Available", "00.00.00.00"}) {
        EXPECT_TRUE(StandsForNoVersion(text)) << text;
    }
    for (const char* text : {"1", "0.1", "A", "nano", "GX1"}) {
        EXPECT_FALSE(StandsForNoVersion(text)) << text;
    }
}

TEST(FirmwareAttributesTest, BinaryVersionIsCleaned) {
    SystemTree tree;
    tree.File(Path("nvme/nvme0/firmware_rev"), std::string("  EX1\x01 \0junk", 12));
    EXPECT_EQ(VersionIn(tree), "EX1");
}

}  // namespace
