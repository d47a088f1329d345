// Each simulated machine from the command line to the scan file: what is expected lies beside it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "acceptance/tarsel_command_test_base.h"
#include "support/golden_file.h"

namespace acceptance {
namespace {

using test_support::MatchesGoldenFile;

class ScenarioScanTest : public TarselCommandTestBase,
                         public testing::WithParamInterface<const char*> {
  protected:
    [[nodiscard]] static std::string Expected(const char* file) {
        return std::string(TARSEL_SCENARIOS) + "/" + GetParam() + "/" + file;
    }
};

TEST_P(ScenarioScanTest, GivesTheExpectedTablesAndScanFile) {
    StartBmc(Bmc(GetParam()));
    const Ended ended = Run(Scan());
    EXPECT_TRUE(MatchesGoldenFile(ended.output, Expected("expected-tables.txt")));
    EXPECT_TRUE(MatchesGoldenFile(Output("Tarsel-update-scan.xml"), Expected("expected-scan.xml")));
}

class ScenarioWithoutExpandTest : public ScenarioScanTest {};

TEST_P(ScenarioWithoutExpandTest, GivesTheSameScanFileMemberByMember) {
    simulators::BmcOptions options = Bmc(GetParam());
    options.expand = simulators::ExpandMode::kUnsupported;
    StartBmc(options);
    Run(Scan());
    EXPECT_TRUE(MatchesGoldenFile(Output("Tarsel-update-scan.xml"), Expected("expected-scan.xml")));
}

std::string ScenarioNameOf(const testing::TestParamInfo<const char*>& info) {
    std::string name = info.param;
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioScanTest,
                         testing::Values("rack-server", "amd-ami-bmc", "tavro-v3",
                                         "enclosure-module", "thin-inventory", "odd-members"),
                         ScenarioNameOf);
// The machine with odd members is left out here: waiting for its broken one takes 21 seconds.
INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioWithoutExpandTest,
                         testing::Values("rack-server", "amd-ami-bmc", "tavro-v3",
                                         "enclosure-module", "thin-inventory"),
                         ScenarioNameOf);

}  // namespace
}  // namespace acceptance
