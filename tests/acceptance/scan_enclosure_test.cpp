// The built command over the HTTPS interfaces of an enclosure management module.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "acceptance/tarsel_command_test_base.h"
#include "support/golden_file.h"

namespace acceptance {
namespace {

using test_support::MatchesGoldenFile;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kNobody = "9";  // the discard service: nobody listens there

class ScanEnclosureTest : public TarselCommandTestBase {
  protected:
    [[nodiscard]] test_support::ChildSetup ModuleScan(const Arguments& more = {}) const {
        return ScanOf({"--vesk", Target(), "--ipmi-port", kNobody}, more);
    }

    // The same resources, but neither root nor manager says what they belong to, and a login that
    // does not work: each request must carry it.
    static simulators::BmcOptions OlderModule() {
        auto options = Bmc("enclosure-module");
        options.session_refusal_status = 500;
        options.replaced_bodies["/redfish/v1"] =
            R"({"@odata.id":"/redfish/v1/","Id":"RootService","RedfishVersion":"1.2.0",)"
            R"("Chassis":{"@odata.id":"/redfish/v1/Chassis"},)"
            R"("Managers":{"@odata.id":"/redfish/v1/Managers"},)"
            R"("Links":{"Sessions":{"@odata.id":"/redfish/v1/SessionService/Sessions"}}})";
        options.replaced_bodies["/redfish/v1/Managers/Module1"] =
            R"({"@odata.id":"/redfish/v1/Managers/Module1","Id":"Module1","Name":"Module",)"
            R"("FirmwareVersion":"3.21"})";
        return options;
    }

    static std::string Expected(const std::string& file) {
        return std::string(TARSEL_SCENARIOS) + "/enclosure-module/" + file;
    }
};

TEST_F(ScanEnclosureTest, NewerInterfaceGivesTheExpectedTablesAndScanFile) {
    StartBmc(Bmc("enclosure-module"));
    const Ended ended = Run(ModuleScan());
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_TRUE(MatchesGoldenFile(ended.output, Expected("expected-vesk-tables.txt")));
    EXPECT_TRUE(
        MatchesGoldenFile(Output("Tarsel-update-scan.xml"), Expected("expected-vesk-scan.xml")));
    EXPECT_EQ(bmc_->Counts().sessions_open, 0);
}

TEST_F(ScanEnclosureTest, OlderServiceGivesTheExpectedTablesAndScanFile) {
    StartBmc(OlderModule());
    const Ended ended = Run(ModuleScan());
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_TRUE(MatchesGoldenFile(ended.output, Expected("expected-vesk-older-tables.txt")));
    EXPECT_TRUE(MatchesGoldenFile(Output("Tarsel-update-scan.xml"),
                                  Expected("expected-vesk-older-scan.xml")));
    EXPECT_EQ(bmc_->Counts().sessions_made, 0);
}

TEST_F(ScanEnclosureTest, WrongPasswordIsTriedOnceOverAllProtocols) {
    StartBmc(Bmc("enclosure-module"));
    auto setup = ModuleScan();
    setup.environment["TARSEL_PASSWORD"] = "wrong";
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 4) << ended.errors;
    EXPECT_EQ(bmc_->Counts().logins_refused, 1);
    EXPECT_THAT(ended.output, IsEmpty());
    EXPECT_THAT(ended.errors, HasSubstr("127.0.0.1"));
}

TEST_F(ScanEnclosureTest, UntrustedCertificateGetsNoByteOfARequest) {
    StartBmc(Bmc("enclosure-module"));
    const Ended ended = Run(UntrustingScanOf({"--vesk", Target(), "--ipmi-port", kNobody}));
    EXPECT_EQ(ended.exit_code, 6) << ended.errors;
    EXPECT_EQ(bmc_->Counts().requests, 0);
    EXPECT_EQ(bmc_->Counts().authorization_headers_seen, 0);
}

}  // namespace
}  // namespace acceptance
