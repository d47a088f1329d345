// A scan over one connection, without the choice of the connection before it.
#pragma once

#include "service/update_scan_service/detail/bmc_connection_scan.h"
#include "support/bmc_scan_test_base.h"

namespace support {

class BmcConnectionScanTestBase : public BmcScanTestBase {
  protected:
    BmcConnectionScanTestBase() {
        using testing::_;
        EXPECT_CALL(platform_, SystemCheckConstructor(_, _, _, _, _, _));
    }

    TarselResult Scan(const ConnectionInfo& connection) {
        Vantix::SystemCheck system_check("", "", "", "", "", "");
        return service::detail::BmcConnectionScan(option_, report_, progress_bar_, system_check)
            .Run(connection);
    }

    const Identities one_identity_ = {AnIdentity().Name("UEFI").SoftwareId("UEFI").Version("1")};
    DynamicProgressBar* progress_bar_ = nullptr;
};

}  // namespace support
