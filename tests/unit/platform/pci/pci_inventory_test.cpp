#include "platform/pci/pci_inventory.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "pci_tree.h"

namespace {

using test_support::AVpd;
using test_support::PciTree;
using Vantix::pci::ParsePciAddress;
using Vantix::pci::PciHost;
using Vantix::pci::PciSurvey;
using Vantix::pci::PieceReader;
using Vantix::pci::ReadPciDevices;
using Vantix::transport::SystemRoot;

constexpr const char* kAdapterAddress = "0000:3b:00.0";

// A machine whose VPD files are the given ones; remembers which were opened.
struct Machine {
    explicit Machine(const PciTree& tree) : root(tree.Root()) {}

    PciSurvey Read() {
        PciHost host{root, {}, {}, {}};
        host.vpd_limits.time = std::chrono::minutes(1);
        host.net_firmware = [](const std::string&) { return "9.0"; };
        host.open_vpd = [this](const SystemRoot&, const std::string& path) -> PieceReader {
            opened.push_back(path);
            const auto image = images.find(path);
            if (image == images.end()) return {};
            return [bytes = image->second](std::size_t offset, std::size_t size) {
                return offset < bytes.size() ? bytes.substr(offset, size) : std::string();
            };
        };
        return ReadPciDevices(host);
    }

    SystemRoot root;
    std::map<std::string, std::string> images;
    std::vector<std::string> opened;
};

std::vector<PciInfo> DevicesIn(const PciTree& tree) {
    return Machine(tree).Read().devices;
}

// What a scan item is called when it is made from the record.
std::string NameOf(const PciInfo& device) {
    if (device.Description.size() > device.ShortName.size()) return device.Description;
    if (!device.ShortName.empty()) return device.ShortName;
    return device.Label3 + "-" + device.Label2 + "-" + device.IdPart1 + "-" + device.IdPart2;
}

TEST(PciInventoryTest, RecordHoldsNamesIdsAndSlot) {
    PciTree tree;
    tree.Device(kAdapterAddress);
    tree.IdFile().Slot("3", "0000:3b:00");
    const auto devices = DevicesIn(tree);
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0].ShortName, "EX710 Controller");
    EXPECT_EQ(devices[0].Label2, "Example Networks");
    EXPECT_EQ(devices[0].Label3, "Ethernet controller");
    EXPECT_EQ(devices[0].IdPart1, "1d0f1001");
    EXPECT_EQ(devices[0].Description, "Example Networks EX710 Controller (Dual Port Adapter)");
    EXPECT_EQ(devices[0].IdPart2, "1d0f2001");
    EXPECT_EQ(devices[0].Slot, "3");
    EXPECT_EQ(devices[0].Version, "");
}

TEST(PciInventoryTest, ItemIsCalledByMakerDeviceAndProduct) {
    PciTree tree;
    tree.Device(kAdapterAddress);
    tree.IdFile();
    EXPECT_EQ(NameOf(DevicesIn(tree).at(0)),
              "Example Networks EX710 Controller (Dual Port Adapter)");
}

TEST(PciInventoryTest, UnknownProductLeavesMakerAndDevice) {
    PciTree tree;
    tree.Device(kAdapterAddress, {.subsystem_device = "0x2999"});
    tree.IdFile();
    EXPECT_EQ(DevicesIn(tree).at(0).Description, "Example Networks EX710 Controller");
}

TEST(PciInventoryTest, UnknownDeviceIsNamedByClassMakerAndIds) {
    PciTree tree;
    tree.Device(kAdapterAddress, {.device = "0x1999"});
    tree.IdFile();
    const auto devices = DevicesIn(tree);
    EXPECT_EQ(devices.at(0).ShortName, "");
    EXPECT_EQ(devices.at(0).Description, "");
    EXPECT_EQ(NameOf(devices.at(0)), "Ethernet controller-Example Networks-1d0f1999-1d0f2001");
}

TEST(PciInventoryTest, WithoutIdFileDevicesAreNamedByClassAndAddress) {
    PciTree tree;
    tree.Device(kAdapterAddress);
    EXPECT_EQ(NameOf(DevicesIn(tree).at(0)), "Network controller-0000:3b:00.0-1d0f1001-1d0f2001");
}

TEST(PciInventoryTest, FirmwaresNameForADeviceGoesBeforeItsMaker) {
    PciTree tree;
    tree.File(tree.Device(kAdapterAddress) + "/label", "Embedded NIC 1\n");
    EXPECT_EQ(NameOf(DevicesIn(tree).at(0)), "Network controller-Embedded NIC 1-1d0f1001-1d0f2001");
}

TEST(PciInventoryTest, OtherPlaceOfTheIdFileIsReadToo) {
    PciTree tree;
    tree.Device(kAdapterAddress);
    tree.File("/usr/share/hwdata/pci.ids", "1d0f  Example Networks\n\t1001  EX710\n");
    EXPECT_EQ(DevicesIn(tree).at(0).ShortName, "EX710");
}

TEST(PciInventoryTest, MissingSubsystemAndClassHaveFixedTexts) {
    PciTree tree;
    tree.Device(kAdapterAddress,
                {.subsystem_vendor = "", .subsystem_device = "", .class_code = ""});
    const auto devices = DevicesIn(tree);
    EXPECT_EQ(devices.at(0).IdPart2, "00000000");
    EXPECT_EQ(devices.at(0).Label3, "PCI device");
}

TEST(PciInventoryTest, BrokenDeviceCostsOnlyItself) {
    PciTree tree;
    tree.Device("0000:3a:00.0", {.vendor = ""});
    tree.Device("0000:3b:00.0");
    tree.Link("/sys/bus/pci/devices/0000:3c:00.0", "0000:3c:00.0");
    tree.Device("10000:e1:00.0", {.device = "0x1002"});
    const auto devices = DevicesIn(tree);
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_EQ(devices[0].IdPart1, "1d0f1001");
    EXPECT_EQ(devices[1].IdPart1, "1d0f1002");
}

TEST(PciInventoryTest, VersionComesFromTheKernelFirst) {
    PciTree tree;
    const std::string folder = tree.Device(kAdapterAddress);
    tree.File(folder + "/nvme/nvme0/firmware_rev", "EX1.0").File(folder + "/vpd", "");
    Machine machine(tree);
    EXPECT_EQ(machine.Read().devices.at(0).Version, "EX1.0");
    EXPECT_TRUE(machine.opened.empty());
}

TEST(PciInventoryTest, VersionComesFromTheProductDataLast) {
    PciTree tree;
    const std::string vpd = tree.Device(kAdapterAddress) + "/vpd";
    tree.File(vpd, "");
    Machine machine(tree);
    machine.images[vpd] = AVpd().Field("V0", "4.2.1").Bytes();
    EXPECT_EQ(machine.Read().devices.at(0).Version, "4.2.1");
}

TEST(PciInventoryTest, NetworkDriverGoesBeforeProductData) {
    PciTree tree;
    const std::string folder = tree.Device(kAdapterAddress);
    tree.File(folder + "/vpd", "").Folder(folder + "/net/eth0");
    Machine machine(tree);
    EXPECT_EQ(machine.Read().devices.at(0).Version, "9.0");
    EXPECT_TRUE(machine.opened.empty());
}

TEST(PciInventoryTest, FunctionsOfOneCardShareOneReading) {
    PciTree tree;
    const std::string vpd = tree.Device("0000:3b:00.0") + "/vpd";
    tree.File(vpd, "").File(tree.Device("0000:3b:00.1") + "/vpd", "");
    const std::string other = tree.Device("0000:3c:00.0") + "/vpd";
    tree.File(other, "");
    Machine machine(tree);
    machine.images[vpd] = AVpd().Field("V0", "4.2.1").Bytes();
    machine.images[other] = AVpd().Field("V0", "5.0.0").Bytes();
    const auto devices = machine.Read().devices;
    EXPECT_EQ(devices.at(0).Version, "4.2.1");
    EXPECT_EQ(devices.at(1).Version, "4.2.1");
    EXPECT_EQ(devices.at(2).Version, "5.0.0");
    EXPECT_EQ(machine.opened.size(), 2U);
}

TEST(PciInventoryTest, ProductDataAreReadOnceARun) {
    PciTree tree;
    const std::string vpd = tree.Device(kAdapterAddress) + "/vpd";
    tree.File(vpd, "");
    Machine machine(tree);
    machine.images[vpd] = AVpd().Field("V0", "4.2.1").Bytes();
    EXPECT_EQ(machine.Read().devices.at(0).Version, "4.2.1");
    EXPECT_EQ(machine.Read().devices.at(0).Version, "4.2.1");
    EXPECT_EQ(machine.opened.size(), 1U);
}

TEST(PciInventoryTest, ForeignProductDataGiveNoVersion) {
    PciTree tree;
    const std::string vpd = tree.Device(kAdapterAddress) + "/vpd";
    tree.File(vpd, "");
    Machine machine(tree);
    machine.images[vpd] = std::string(40000, '\x5a');
    const PciSurvey survey = machine.Read();
    EXPECT_EQ(survey.devices.at(0).Version, "");
    EXPECT_TRUE(survey.issues.empty());
}

TEST(PciInventoryTest, SilentDeviceIsToldOfAndCostsOnlyItsVersion) {
    PciTree tree;
    tree.File(tree.Device(kAdapterAddress) + "/vpd", "");
    const SystemRoot root(tree.Root());
    PciHost host{root, {}, {}, {}};
    host.vpd_limits.time = std::chrono::milliseconds(20);
    const auto answer = std::make_shared<std::mutex>();
    const std::lock_guard<std::mutex> silence(*answer);
    host.open_vpd = [answer](const SystemRoot&, const std::string&) -> PieceReader {
        return [answer](std::size_t, std::size_t) {
            const std::lock_guard<std::mutex> wait(*answer);
            return std::string();
        };
    };
    const PciSurvey survey = ReadPciDevices(host);
    EXPECT_EQ(survey.devices.at(0).Version, "");
    EXPECT_EQ(survey.issues, std::vector<std::string>{PciTree::Folder(kAdapterAddress) +
                                                      "/vpd: no answer in time"});
}

TEST(PciInventoryTest, WishToStopEndsTheReading) {
    PciTree tree;
    tree.Device(kAdapterAddress);
    const SystemRoot root(tree.Root());
    PciHost host{root, {}, {}, {}};
    host.vpd_limits.is_cancelled = [] { return true; };
    EXPECT_TRUE(ReadPciDevices(host).devices.empty());
}

TEST(PciInventoryTest, EmptyTreeHasNoDevice) {
    const PciTree tree;
    EXPECT_TRUE(DevicesIn(tree).empty());
}

}  // namespace
