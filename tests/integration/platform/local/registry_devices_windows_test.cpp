// Devices of a Wine prefix, through the calls that a real Windows answers too.

#include "support/registry_device_windows.h"

#include <initguid.h>  // makes devpkey.h define its keys

#include <devpkey.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "platform/connection/connection.h"
#include "platform/local/present_devices.h"
#include "platform/pci/pci.h"
#include "platform/raid/raid_adapters.h"
#include "platform/system_info/system_info.h"

namespace {

using test_support::RegistryDevice;
using testing::ElementsAre;
using Vantix::DriverData;
using Vantix::local::PresentDevice;

class RegistryDevicesTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!test_support::IsWine()) {
            GTEST_SKIP() << "writes devices into the registry, which only a Wine prefix is for";
        }
    }

    static PresentDevice Listed(const RegistryDevice& device) {
        EXPECT_TRUE(device.IsComplete());
        const auto devices = Vantix::local::PresentDevices();
        if (devices) {
            for (const PresentDevice& one : *devices) {
                if (one.instance_id == device.InstanceId()) return one;
            }
        }
        ADD_FAILURE() << device.InstanceId() << " is not listed";
        return {};
    }

    // Those of the prefix itself are among them.
    static std::vector<DriverData> DriversFor(const std::string& ids) {
        const Vantix::VantixConnection::ConnectOption option;
        const Vantix::VantixConnection::ActiveRun run(option);
        std::vector<DriverData> drivers;
        EXPECT_EQ(SystemInfoScan::GetDriverData(drivers), 0);
        std::erase_if(drivers, [&](const DriverData& driver) {
            return driver.Identifier.find("_" + ids) == std::string::npos;
        });
        return drivers;
    }
};

TEST_F(RegistryDevicesTest, DriverIsShownWithItsVersionAndPackage) {
    RegistryDevice device(R"(PCI\VEN_FA4E&DEV_0001)", "Fake \xC3\xBC Adapter");
    device.Texts("HardwareID", {R"(PCI\VEN_FA4E&DEV_0001&CC_020000)"})
        .Text("Class", "Net")
        .Text("Service", "fakenet")
        .Text("Driver", R"({4d36e972-e325-11ce-bfc1-08002be10318}\9001)")
        .Property(DEVPKEY_Device_DriverVersion, "10.0.19041.1")
        .Property(DEVPKEY_Device_DriverProvider, "Fake Networks")
        .Property(DEVPKEY_Device_DriverInfPath, "oem5.inf");
    ASSERT_TRUE(device.IsComplete());
    const std::vector<DriverData> drivers = DriversFor("fa4e0001");
    ASSERT_EQ(drivers.size(), 1U);
    EXPECT_EQ(drivers[0].Identifier, "fakenet_fa4e0001");
    EXPECT_EQ(drivers[0].Version, "10.0.19041.1");
    EXPECT_EQ(drivers[0].Description, "Fake \xC3\xBC Adapter (Fake Networks, oem5.inf)");
    EXPECT_EQ(drivers[0].DevicePresent, 1);
}

TEST_F(RegistryDevicesTest, DeviceWithoutDriverIsMissed) {
    RegistryDevice device(R"(PCI\VEN_FA4E&DEV_0002)", "Ethernet Controller");
    device.Texts("HardwareID", {R"(PCI\VEN_FA4E&DEV_0002&CC_020000)"})
        .Property(DEVPKEY_Device_BusNumber, DWORD{0x7A3B})
        .Property(DEVPKEY_Device_Address, DWORD{0x00010002})
        .Property(DEVPKEY_Device_ProblemCode, DWORD{28});
    ASSERT_TRUE(device.IsComplete());
    const std::vector<DriverData> drivers = DriversFor("fa4e0002");
    ASSERT_EQ(drivers.size(), 1U);
    EXPECT_EQ(drivers[0].Identifier, "NoDriver#PCI_fa4e0002");
    EXPECT_EQ(drivers[0].Version, "");
    EXPECT_EQ(drivers[0].Description, "Network controller without driver at 007a:3b:01.2");
}

TEST_F(RegistryDevicesTest, PciRecordHasNamesSlotAndFirmwareVersion) {
    RegistryDevice device(R"(PCI\VEN_FA4E&DEV_0003&SUBSYS_00010002)", "Fake Storage");
    device
        .Texts("HardwareID", {R"(PCI\VEN_FA4E&DEV_0003&SUBSYS_00010002&REV_01)",
                              R"(PCI\VEN_FA4E&DEV_0003&CC_010400)"})
        .Text("Mfg", "Example Storage")
        .Text("Service", "fakeraid")
        .Property(DEVPKEY_Device_BusNumber, DWORD{0x7B3B})
        .Property(DEVPKEY_Device_Address, DWORD{0})
        .Property(DEVPKEY_Device_UINumber, DWORD{5})
        .Property(DEVPKEY_Device_FirmwareVersion, "4.5.6");
    ASSERT_TRUE(device.IsComplete());
    PciInfo record;
    ASSERT_EQ(GetPciInfoByAddress("007b:3b:00.0", record), 0);
    EXPECT_EQ(record.IdPart1 + record.IdPart2, "fa4e000300020001");
    EXPECT_EQ(record.ShortName, "Fake Storage");
    EXPECT_EQ(record.Description, "Example Storage Fake Storage");
    EXPECT_EQ(record.Slot, "5");
    EXPECT_EQ(record.Version, "4.5.6");
    std::vector<PciInfo> all;
    EXPECT_EQ(GetPciInfo(all), 0);
    EXPECT_EQ(std::count_if(all.begin(), all.end(),
                            [](const PciInfo& one) { return one.IdPart1 == "fa4e0003"; }),
              1);
}

TEST_F(RegistryDevicesTest, RaidControllerIsFound) {
    RegistryDevice device(R"(PCI\VEN_9005&DEV_FA4E)", "Fake RAID");
    device.Texts("HardwareID", {R"(PCI\VEN_9005&DEV_FA4E&CC_010400)"})
        .Property(DEVPKEY_Device_BusNumber, DWORD{0x7C3B})
        .Property(DEVPKEY_Device_Address, DWORD{0});
    ASSERT_TRUE(device.IsComplete());
    const auto adapters = Vantix::raid::FindRaidAdapters(Vantix::transport::SystemRoot());
    ASSERT_EQ(adapters.list.size(), 1U);
    EXPECT_EQ(adapters.list[0].address, "007c:3b:00.0");
    EXPECT_TRUE(adapters.list[0].is_served);
    EXPECT_TRUE(adapters.list[0].hides_disks);
}

TEST_F(RegistryDevicesTest, FirmwareRevisionStandsWhereThereIsNoVersion) {
    RegistryDevice device(R"(PCI\VEN_FA4E&DEV_0004)", "Fake");
    device.Property(DEVPKEY_Device_FirmwareRevision, "7");
    EXPECT_EQ(Listed(device).firmware_version, "7");
}

TEST_F(RegistryDevicesTest, LongTextsAndListsAreWhole) {
    const std::string name(2000, 'n');
    const std::vector<std::string> ids(100, R"(PCI\VEN_FA4E&DEV_0005&SUBSYS_00000000&REV_01)");
    RegistryDevice device(R"(PCI\VEN_FA4E&DEV_0005)", name);
    device.Texts("HardwareID", ids).Property(DEVPKEY_Device_DriverProvider, name);
    const PresentDevice listed = Listed(device);
    EXPECT_EQ(listed.description, name);
    EXPECT_EQ(listed.driver_provider, name);
    EXPECT_EQ(listed.hardware_ids, ids);
}

TEST_F(RegistryDevicesTest, WayThereIsAList) {
    RegistryDevice device(R"(PCI\VEN_FA4E&DEV_0006)", "Fake");
    device.Property(DEVPKEY_Device_LocationPaths,
                    std::vector<std::string>{"PCIROOT(0)#PCI(1C00)", "ACPI(_SB_)"});
    EXPECT_THAT(Listed(device).location_paths, ElementsAre("PCIROOT(0)#PCI(1C00)", "ACPI(_SB_)"));
}

TEST_F(RegistryDevicesTest, ValuesOfAnotherTypeAreNotTold) {
    RegistryDevice device(R"(PCI\VEN_FA4E&DEV_0007)", "Fake");
    device.Texts("Service", {"fake", "list"})
        .Text("HardwareID", "one text")
        .Property(DEVPKEY_Device_BusNumber, "text")
        .Property(DEVPKEY_Device_DriverVersion, DWORD{5});
    const PresentDevice listed = Listed(device);
    EXPECT_EQ(listed.service, "");
    EXPECT_TRUE(listed.hardware_ids.empty());
    EXPECT_FALSE(listed.bus);
    EXPECT_EQ(listed.driver_version, "");
}

TEST_F(RegistryDevicesTest, WhatTheRegistryDoesNotHoldIsEmpty) {
    const RegistryDevice device(R"(PCI\VEN_FA4E&DEV_0008)", "");
    const PresentDevice listed = Listed(device);
    EXPECT_EQ(listed.description, "");
    EXPECT_EQ(listed.manufacturer, "");
    EXPECT_EQ(listed.driver_key, "");
    EXPECT_TRUE(listed.compatible_ids.empty());
    EXPECT_FALSE(listed.place);
    EXPECT_FALSE(listed.slot);
    EXPECT_FALSE(listed.problem);
    EXPECT_FALSE(HasDriver(listed));
}

}  // namespace
