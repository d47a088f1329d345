// The facts of the scenario "own-server". Its SMBIOS table is made by a program of its own, so that
// a misreading of the format cannot hide on both sides.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/local/local_host.h"
#include "platform/local/smbios_tables.h"
#include "platform/system_check/system_check.h"
#include "platform/system_info/system_info.h"
#include "support/local_run.h"
#include "transport/smbios/host_interface.h"
#include "transport/smbios/smbios_records.h"

namespace {

using namespace Vantix::transport;  // NOLINT: the records of the table
using Vantix::VantixConnection::ConnectionInfo;

class OwnServerFactsTest : public testing::Test {
  protected:
    [[nodiscard]] static SmbiosStructures Table() {
        return Vantix::local::ReadSmbios(*Vantix::local::HostRoot());
    }

    const std::string root_ = std::string(TARSEL_SCENARIOS) + "/own-server/sysroot";
    const test_support::LocalRun run_{root_};
};

TEST_F(OwnServerFactsTest, OperatingSystemIsTold) {
    std::pair<std::string, std::string> os_arch;
    std::string minor_version;
    EXPECT_EQ(SystemInfoScan::GetOSInfo(os_arch, minor_version), 0);
    EXPECT_EQ(os_arch.first, "exampleos9");
    EXPECT_EQ(os_arch.second, "x86_64");
    EXPECT_EQ(minor_version, "4");
}

TEST_F(OwnServerFactsTest, MachineTypeAndSerialNumberAreTold) {
    std::pair<std::string, std::string> mt_sn;
    EXPECT_EQ(SystemInfoScan::GetMachineType(ConnectionInfo(), mt_sn), 0);
    EXPECT_EQ(mt_sn.first, "Example Own 400");
    EXPECT_EQ(mt_sn.second, "EXOWN0001");
}

TEST_F(OwnServerFactsTest, UefiVersionIsTold) {
    std::string version;
    EXPECT_TRUE(Vantix::SystemCheck("", "", "", "", "", "").GetUEFIVersion(version));
    EXPECT_EQ(version, "EXUE24B-3.21");
}

TEST_F(OwnServerFactsTest, TableTellsTheSameAsTheFiles) {
    EXPECT_EQ(ReadSmbiosBios(Table()).version, "EXUE24B-3.21");
    EXPECT_EQ(ReadSmbiosSystem(Table()).product_name, "Example Own 400");
    EXPECT_EQ(ReadSmbiosSystem(Table()).sku_number, "EXOWN400");
    EXPECT_EQ(ReadSmbiosBaseboard(Table()).serial_number, "EXBRD0001");
}

TEST_F(OwnServerFactsTest, SlotsAreTold) {
    const auto slots = ReadSmbiosSlots(Table());
    ASSERT_EQ(slots.size(), 4u);
    EXPECT_EQ(slots[0].designation, "PCIe Slot 1");
    EXPECT_EQ(slots[3].id, 4);
    EXPECT_TRUE(slots[0].address.has_value());
}

TEST_F(OwnServerFactsTest, HostInterfaceTellsWhereTheBmcIs) {
    const auto interfaces = ReadRedfishHostInterfaces(Table());
    ASSERT_EQ(interfaces.size(), 1u);
    EXPECT_EQ(interfaces[0].service_address, "127.0.0.1");
    EXPECT_EQ(interfaces[0].host_address, "127.0.0.2");
    EXPECT_EQ(interfaces[0].service_port, 443);
}

TEST_F(OwnServerFactsTest, EverythingIsReadableAndNothingNeedsASentence) {
    std::pair<std::string, std::string> mt_sn;
    EXPECT_EQ(SystemInfoScan::GetMachineType(ConnectionInfo(), mt_sn), 0);
    EXPECT_TRUE(run_.Notices().empty());
    EXPECT_TRUE(run_.Sources().empty());
}

}  // namespace
