// What the tests of scans of AMD platforms script again and again.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "service/update_scan_service/detail/amd_platform_scan.h"
#include "support/bmc_scan_test_base.h"

namespace support {

inline PciInfo APciDevice(const std::string& id, const std::string& slot) {
    PciInfo device;
    device.ShortName = "device " + slot;
    device.IdPart1 = id;
    device.Slot = slot;
    return device;
}

class AmdPlatformScanTestBase : public BmcScanTestBase {
  protected:
    TarselResult Scan() { return service::detail::AmdPlatformScan(option_, report_, nullptr); }

    void OsInfoIs(int code) {
        EXPECT_CALL(platform_, GetOSInfo(testing::_))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(std::make_pair("rhel9", "x86_64")),
                                     testing::Return(code)));
    }
    void LocalMachineTypeIs(int code) {
        SystemCheckIsMade();
        EXPECT_CALL(platform_, SystemCheckGetMachineType(testing::_))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(std::make_pair("MT-1", "SN-1")),
                                     testing::Return(code)));
    }
    void ReachInventory() {
        OsInfoIs(0);
        LocalMachineTypeIs(0);
    }
    void RedfishGives(int code, const Identities& identities) {
        RestFetchGives(ok_, {rest_});
        InventoryGives(rest_, code, identities);
    }
    /// What is read already stays in the list: the library appends.
    void IpmiGives(Vantix::INVENTORYRETURNCODE code, const Identities& identities) {
        EXPECT_CALL(platform_, xFirmwareInventoryConstructor(IsConnection(own_controller_)));
        EXPECT_CALL(platform_,
                    GetXFWSoftwareIdentity(IsConnection(own_controller_), testing::IsEmpty()))
            .WillOnce(testing::DoAll(testing::SetArgReferee<1>(identities), testing::Return(code)));
    }
    void PciDevicesAre(const std::vector<PciInfo>& devices) {
        EXPECT_CALL(platform_, GetPciInfo(testing::IsEmpty()))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(devices), testing::Return(0)));
    }
    void DisksAre(int code, const Identities& disks) {
        EXPECT_CALL(platform_, GetDiskSoftwareIdentity(testing::IsEmpty()))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(disks), testing::Return(code)));
    }
    void DiskDriversAre(int code, const Identities& disk_drivers) {
        EXPECT_CALL(platform_, GetDiskDriverSoftwareIdentity(testing::IsEmpty()))
            .WillOnce(
                testing::DoAll(testing::SetArgReferee<0>(disk_drivers), testing::Return(code)));
    }
    void DriversAre(int code, const std::vector<Vantix::DriverData>& drivers) {
        EXPECT_CALL(platform_, GetDriverData(testing::IsEmpty()))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(drivers), testing::Return(code)));
    }
    /// One PCI device, and no failure, from the PCI devices on.
    void RestOfTheHostIsPlain() {
        PciDevicesAre({APciDevice("8086", "1")});
        DisksAre(0, {});
        DiskDriversAre(0, {});
        DriversAre(0, {});
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const service::UpdateScanItem& item : report_.GetScanResults())
            names.push_back(item.name);
        return names;
    }

    // Everything is scripted in the order in which it must happen.
    const testing::InSequence in_sequence_;
    const ConnectionInfo own_controller_ = [] {
        ConnectionInfo connection;
        connection.connect_case = Vantix::VantixConnection::kConnectCaseIpmi;
        return connection;
    }();
    const TarselResult closed_{CONNECTION_FAILED, "nobody there"};
    const Identities bmc_ = {AnIdentity().Name("BMC").SoftwareId("BMC").Version("1")};
    const std::vector<Vantix::DriverData> driver_ = {ADriver().Identifier("driver")};
};

}  // namespace support
