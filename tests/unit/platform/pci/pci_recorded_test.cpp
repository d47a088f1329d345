// Over attributes recorded from real machines, and those of the scenario "own-server".
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/pci/pci.h"
#include "platform/pci/pci_inventory.h"
#include "support/file_kinds.h"
#include "support/local_run.h"
#include "support/temporary_folder.h"

namespace {

namespace fs = std::filesystem;

using Vantix::pci::PciHost;
using Vantix::transport::SystemRoot;

fs::path Recording() {
    const char* environment = std::getenv("TARSEL_SHARED_MOCKUPS");
    return fs::path(environment != nullptr ? environment : TARSEL_SHARED_MOCKUPS) / "sysfs-procfs";
}

std::vector<PciInfo> DevicesBelow(const std::string& folder) {
    const SystemRoot root(folder);
    return ReadPciDevices(PciHost{root, {}, {}, {}}).devices;
}

bool IsDevice(const fs::path& folder) {
    return fs::is_regular_file(folder / "vendor") && fs::is_regular_file(folder / "class");
}

// Without the recording's rights, which forbid to write below its folders.
void CopyFiles(const fs::path& from, const fs::path& to) {
    for (const auto& entry : fs::recursive_directory_iterator(from)) {
        const fs::path copy = to / fs::relative(entry.path(), from);
        if (entry.is_directory()) fs::create_directories(copy);
        if (!entry.is_regular_file()) continue;
        fs::create_directories(copy.parent_path());
        std::ofstream(copy, std::ios::binary)
            << test_support::TemporaryFolder::ReadFile(entry.path().string());
    }
}

// The recording keeps links as files that hold their target; this gives each device its link.
void LinkDevices(const fs::path& root) {
    const fs::path links = root / "sys/bus/pci/devices";
    fs::create_directories(links);
    for (const auto& entry : fs::recursive_directory_iterator(root / "sys/devices")) {
        if (!entry.is_directory() || !IsDevice(entry.path())) continue;
        const fs::path target = fs::relative(entry.path(), links);
        test_support::MakeLink(target.string(), (links / entry.path().filename()).string());
    }
}

class RecordedPciTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!fs::is_directory(Recording())) {
            GTEST_SKIP() << "no recorded attributes; set TARSEL_SHARED_MOCKUPS to their folder";
        }
    }
};

TEST_F(RecordedPciTest, FilesInPlaceOfLinksAreNoDevices) {
    EXPECT_TRUE(DevicesBelow(Recording().string()).empty());
}

TEST_F(RecordedPciTest, DevicesTellIdsAndFirmware) {
    const test_support::TemporaryFolder folder;
    const fs::path root = folder.Path("root");
    CopyFiles(Recording() / "sys/devices", root / "sys/devices");
    LinkDevices(root);
    std::vector<std::string> found;
    for (const PciInfo& device : DevicesBelow(root.string())) {
        found.push_back(device.IdPart1 + " " + device.IdPart2 + " " + device.Label3 + " " +
                        device.Version);
    }
    EXPECT_EQ(found,
              (std::vector<std::string>{"10221634 17aa5095 Bridge ", "80866f08 15d90833 Bridge ",
                                        "808615d7 17aa225a Network controller ",
                                        "c0a9540a c0a95021 Mass storage controller P9CR30A",
                                        "100000ab 10003040 Mass storage controller 03.00.04.00",
                                        "8086159b 80860003 Network controller "}));
}

std::string LineOf(const PciInfo& device) {
    return device.IdPart1 + device.IdPart2 + " [" + device.Slot + "] [" + device.Version + "] " +
           device.Description;
}

TEST(OwnServerPciTest, DevicesTellNamesSlotsAndVersions) {
    const test_support::LocalRun run(std::string(TARSEL_SCENARIOS "/own-server/sysroot"));
    std::vector<PciInfo> devices;
    EXPECT_EQ(GetPciInfo(devices), 0);
    std::vector<std::string> lines;
    for (const PciInfo& device : devices) {
        if (device.Label3.find("ridge") == std::string::npos) lines.push_back(LineOf(device));
    }
    const std::string card =
        "fe010001fe010a01 [1] [22.31.6] Example Networks EXNIC 25G Controller"
        " (Example NIC 25G 2-Port Adapter)";
    EXPECT_EQ(lines,
              (std::vector<std::string>{
                  "fe030003fe030100 [] [] Example Chips Example SATA Controller", card, card,
                  "90050e0190050e10 [2] [] Example Storage EXRAID 8i (Example RAID 8i Adapter)",
                  "fe020001fe020100 [11] [EX2.10] Example Flash EXFLASH NVMe Controller",
                  "fe020001fe020100 [12] [EX2.11] Example Flash EXFLASH NVMe Controller",
                  "fe030004fe030a04 [3] [] Example Chips Example Accelerator"}));
    EXPECT_TRUE(run.Sources().empty());
}

TEST(OwnServerPciTest, PortsOfTheBoardHaveNoSlot) {
    const test_support::LocalRun run(std::string(TARSEL_SCENARIOS "/own-server/sysroot"));
    std::vector<PciInfo> devices;
    EXPECT_EQ(GetPciInfo(devices), 0);
    int ports = 0;
    for (const PciInfo& device : devices) {
        if (device.IdPart1 != "fe030002") continue;
        EXPECT_EQ(device.Slot, "");
        ++ports;
    }
    EXPECT_EQ(ports, 5);
}

}  // namespace
