#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "pci_tree.h"
#include "platform/local/local_host.h"
#include "platform/pci/pci.h"
#include "support/local_run.h"
#include "support/unprivileged_user.h"

namespace {

using test_support::AVpd;
using test_support::LocalRun;
using test_support::PciTree;

TEST(PciTest, EveryDeviceIsInTheList) {
    PciTree tree;
    tree.Device("0000:3b:00.0");
    tree.File(tree.Device("0000:3c:00.0") + "/vpd", AVpd().Field("V0", "4.2.1").Bytes());
    const LocalRun run(tree);
    std::vector<PciInfo> devices(5);
    EXPECT_EQ(GetPciInfo(devices), 0);
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_EQ(devices[0].Version, "");
    EXPECT_EQ(devices[1].Version, "4.2.1");
}

TEST(PciTest, MachineWithoutPciAnswersMinusOne) {
    PciTree tree;
    tree.Folder("/sys");
    const LocalRun run(tree);
    std::vector<PciInfo> devices;
    EXPECT_EQ(GetPciInfo(devices), -1);
    EXPECT_TRUE(devices.empty());
}

TEST(PciTest, DeviceIsFoundByItsAddressWithTheSameRecord) {
    PciTree tree;
    tree.Device("0000:3a:00.0", {.device = "0x1002"});
    tree.Device("0000:3b:00.0");
    tree.IdFile().Slot("3", "0000:3b:00");
    const LocalRun run(tree);
    for (const char* address : {"0000:3b:00.0", "0000:3B:00.0", "3b:00.0", "0:3b:0:0"}) {
        PciInfo device;
        EXPECT_EQ(GetPciInfoByAddress(address, device), 0) << address;
        EXPECT_EQ(device.Description, "Example Networks EX710 Controller (Dual Port Adapter)");
        EXPECT_EQ(device.Slot, "3");
        EXPECT_EQ(device.IdPart1, "1d0f1001");
    }
}

TEST(PciTest, AddressOfNoDeviceLeavesTheRecordAlone) {
    PciTree tree;
    const std::string folder = tree.Device("0000:3b:00.0");
    tree.Link(tree.Device("0000:3b:00.1") + "/physfn", "../0000:3b:00.0");
    const LocalRun run(tree);
    PciInfo device;
    device.Slot = "kept";
    for (const std::string& address :
         {std::string("../../../devices/pci0000:3b/0000:3b:00.0"), std::string("0000:3c:00.0"),
          std::string("0000:3b:00.1"), std::string(), folder, std::string(100000, ':')}) {
        EXPECT_NE(GetPciInfoByAddress(address, device), 0);
    }
    EXPECT_EQ(device.Slot, "kept");
}

TEST(PciTest, PipeInPlaceOfProductDataDoesNotHoldUpTheScan) {
    PciTree tree;
    const std::string folder = tree.Device("0000:3b:00.0");
    tree.Pipe(folder + "/vpd");
    const LocalRun run(tree);
    std::vector<PciInfo> devices;
    EXPECT_EQ(GetPciInfo(devices), 0);
    EXPECT_EQ(devices.at(0).Version, "");
}

TEST(PciTest, ForbiddenProductDataAreToldOnceInTheSummary) {
    PciTree tree;
    const std::string vpd = tree.Device("0000:3b:00.0") + "/vpd";
    tree.File(vpd, "x");
    tree.Forbid(vpd);
    const test_support::UnprivilegedUser user(tree.Root());
    const LocalRun run(tree);
    std::vector<PciInfo> devices;
    EXPECT_EQ(GetPciInfo(devices), 0);
    EXPECT_EQ(GetPciInfo(devices), 0);
    const auto sources = run.Sources();
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_EQ(sources[0].source, Vantix::local::kPrivilegedSource);
    EXPECT_EQ(sources[0].issues, std::vector<std::string>{vpd});
}

TEST(PciTest, ThisMachineIsReadWithoutHarm) {
    std::vector<PciInfo> devices;
    const int code = GetPciInfo(devices);
    EXPECT_EQ(code, devices.empty() ? -1 : 0);
    for (const PciInfo& device : devices) {
        EXPECT_EQ(device.IdPart1.size(), 8U);
        EXPECT_EQ(device.IdPart2.size(), 8U);
        EXPECT_FALSE(device.Label3.empty());
    }
}

}  // namespace
