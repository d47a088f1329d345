#include "platform/cim/service_probe.h"

#include <gtest/gtest.h>

#include "common/result/result_codes.h"

namespace Vantix::cim {
namespace {

TEST(CimServiceProbeTest, SettingsCarryTheUsersWishesOnTrust) {
    VantixConnection::ConnectOption option;
    option.target_address = "host";
    option.verify_certificate = false;
    option.ca_file = "ca";
    option.fingerprint = "fp";
    option.legacy_tls = true;
    option.proxy = "p";
    option.connect_timeout_seconds = 7;

    const auto settings = CurlSettingsFor(option, 5989, true);

    EXPECT_EQ(settings.host, "host");
    EXPECT_EQ(settings.port, 5989);
    EXPECT_TRUE(settings.use_tls);
    EXPECT_FALSE(settings.verify_certificate);
    EXPECT_EQ(settings.ca_file, "ca");
    EXPECT_EQ(settings.fingerprint, "fp");
    EXPECT_TRUE(settings.legacy_tls);
    EXPECT_EQ(settings.proxy, "p");
    EXPECT_EQ(settings.connect_timeout.count(), 7000);
    EXPECT_EQ(settings.max_connections, 1);
}

TEST(CimServiceProbeTest, BmcSentenceNamesBothPorts) {
    const TarselResult result = ClosedCimOfBmc("host:5989", 443);

    EXPECT_TRUE(result == CIM_OVER_HTTPS_DISABLED);
    EXPECT_EQ(
        result.message,
        "CIM over HTTPS is disabled on the BMC: nobody listens at host:5989 although port 443 "
        "answers; enable CIM over HTTPS on the BMC and scan again.");
}

TEST(CimServiceProbeTest, HypervisorSentenceNamesServiceAndCommands) {
    const TarselResult result = ClosedCimOfHypervisor("host:5989", 443, "8.0.3");

    EXPECT_TRUE(result == NO_CIM_SERVICE);
    EXPECT_EQ(result.message,
              "The CIM service (sfcbd-watchdog) does not answer at host:5989 although the host "
              "answers on port 443 (version 8.0.3); on the host, see its state with "
              "\"/etc/init.d/sfcbd-watchdog status\" and start it with \"esxcli system wbem set "
              "--enable true\" and \"/etc/init.d/sfcbd-watchdog start\"; releases after 8 have "
              "none.");
}

TEST(CimServiceProbeTest, UnknownVersionIsNotTold) {
    EXPECT_EQ(ClosedCimOfHypervisor("h:1", 443, "").message.find("version"), std::string::npos);
}

TEST(CimServiceProbeTest, ReleaseWithoutCimIsUnsupported) {
    const TarselResult result = ClosedCimOfHypervisor("h:1", 443, "9.0.1");

    EXPECT_TRUE(result == ESXI_INTERNAL_ERROR);
    EXPECT_EQ(result.message, "Tarsel do not support this installed VMWare ESXi Version.");
}

TEST(CimServiceProbeTest, OtherFailuresKeepTheirResult) {
    const TarselResult result(TIMEOUT, "kept");
    transport::CimFailure failure;
    failure.problem = transport::CimProblem::kNotReached;
    failure.transport = transport::HttpErrorKind::kTimeout;
    for (const int mode : {2, 3, 4, 5}) {
        VantixConnection::ConnectOption option;
        option.connect_mode = mode;
        EXPECT_EQ(ExplainRefusal(option, failure, result).message, "kept");
    }
}

}  // namespace
}  // namespace Vantix::cim
