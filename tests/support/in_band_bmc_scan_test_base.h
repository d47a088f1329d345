// What the tests of scans of a host together with its controller script again and again.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "service/update_scan_service/detail/in_band_bmc_scan.h"
#include "support/bmc_scan_test_base.h"

namespace support {

class InBandBmcScanTestBase : public BmcScanTestBase {
  protected:
    TarselResult Scan() { return service::detail::InBandBmcScan(option_, report_, progress_bar_); }

    void ClockShows(std::int64_t seconds) {
        EXPECT_CALL(platform_, MonotonicSeconds())
            .WillOnce(testing::Return(seconds))
            .RetiresOnSaturation();
    }
    void OsInfoIs(int code) {
        EXPECT_CALL(platform_, GetOSInfo(testing::_, testing::_))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(std::make_pair("rhel9", "x86_64")),
                                     testing::SetArgReferee<1>("4"), testing::Return(code)));
    }
    /// The system information is acquired over Redfish (or CIM, when Redfish is not supported).
    void SystemInfoIs(const std::string& bmc_type, bool redfish_supported) {
        ClockShows(100);
        OsInfoIs(0);
        ClockShows(100);
        SystemCheckIsMade();
        RestFetchGives(ok_, {rest_});
        RedfishIsSupported(redfish_supported);
        if (!redfish_supported) CimFetchGives(ok_, {cim_});
        MachineTypeIs(redfish_supported ? rest_ : cim_, 0, "MT-1", "SN-1");
        BmcTypeIs(redfish_supported ? rest_ : cim_, bmc_type);
    }
    void LegacyCheckAnswers(int answer) {
        SystemCheckIsMade();
        LegacyListAnswers("MT-1", answer);
    }
    void EstimateAfter(std::int64_t seconds_spent) {
        ClockShows(100 + seconds_spent);
        EXPECT_CALL(platform_, GetScanInbandTimeEstimation("MT-1-x86_64", "rhel9", seconds_spent))
            .WillOnce(testing::Return(120));
    }
    void ReachInventory(const std::string& bmc_type, bool redfish_supported) {
        SystemInfoIs(bmc_type, redfish_supported);
        LegacyCheckAnswers(0);
        EstimateAfter(7);
    }

    void DriversAre(int code, const std::vector<Vantix::DriverData>& drivers) {
        EXPECT_CALL(platform_, GetDriverData(testing::IsEmpty()))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(drivers), testing::Return(code)));
    }
    /// Another controller than Tavro: its one CIM connection is read.
    void CimFirmwareIs(const Identities& identities) {
        CimFetchGives(ok_, {cim_});
        InventoryGives(cim_, 0, identities);
    }
    void DisksAre(int code, const Identities& disks) {
        EXPECT_CALL(platform_, GetDiskDriverSoftwareIdentity(testing::IsEmpty()))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(disks), testing::Return(code)));
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const service::UpdateScanItem& item : report_.GetScanResults())
            names.push_back(item.name);
        return names;
    }

    // Everything is scripted in the order in which it must happen.
    const testing::InSequence in_sequence_;
    const Identities uefi_ = {AnIdentity().Name("UEFI").SoftwareId("UEFI").Version("1")};
    const std::vector<Vantix::DriverData> driver_ = {ADriver().Identifier("driver")};
    DynamicProgressBar* progress_bar_ = nullptr;
};

}  // namespace support
