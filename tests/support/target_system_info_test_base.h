// What the tests of the acquisition of system information script again and again.
#pragma once

#include <string>
#include <utility>

#include "service/update_scan_service/detail/target_system_info.h"
#include "support/bmc_scan_test_base.h"

namespace support {

class TargetSystemInfoTestBase : public BmcScanTestBase {
  protected:
    TarselResult Acquire() { return service::detail::AcquireTargetSystemInfo(option_, info_); }

    void OsInfoGives(int code) {
        EXPECT_CALL(platform_, GetOSInfo(testing::_, testing::_))
            .WillOnce(testing::DoAll(testing::SetArgReferee<0>(std::make_pair("rhel9", "x86_64")),
                                     testing::SetArgReferee<1>("4"), testing::Return(code)));
    }
    void WalkBegins() {
        OsInfoGives(0);
        EXPECT_CALL(platform_, MonotonicSeconds()).WillOnce(testing::Return(100));
        SystemCheckIsMade();
    }
    void IpmiFetchGives(const TarselResult& result, const Connections& connections) {
        EXPECT_CALL(platform_, FetchIPMIConnectionList(HasUser("someone"), testing::IsEmpty()))
            .WillOnce(
                testing::DoAll(testing::SetArgReferee<1>(connections), testing::Return(result)));
    }
    void TypesAre(const ConnectionInfo& connection, const std::string& machine_type,
                  const std::string& bmc_type) {
        MachineTypeIs(connection, 0, machine_type, "SN-1");
        BmcTypeIs(connection, bmc_type);
    }
    /// The local host is asked in vain for both.
    void LocalHostTellsNothing() {
        MachineTypeIs(local_, TIMEOUT, "", "");
        BmcTypeCodeIs(local_, 1, 0);
    }

    const ConnectionInfo ipmi_ = AConnection(1, 623);
    const ConnectionInfo local_;
    const TarselResult closed_{CONNECTION_FAILED, "nobody there"};
    service::detail::TargetSystemInfo info_;
};

}  // namespace support
