// Whole scans over recordings of real services, served by the simulated BMC. The recordings lie
// beside the project; where they are missing the tests say so.

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

#include "common/result/result_codes.h"
#include "integration/platform/redfish/bmc_scan.h"
#include "recorded_tree.h"

namespace Vantix::redfish {
namespace {

class RecordedScanTest : public ::testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        const auto sets = RecordedSetsFolder();
        if (!sets) GTEST_SKIP() << "no recorded sets; set TARSEL_SHARED_MOCKUPS to their folder";
        folder_ = *sets / GetParam();
        ASSERT_TRUE(std::filesystem::exists(folder_ / "FIRMWARE.tsv")) << folder_;
    }

    ScanOutcome ScanWith(simulators::ExpandMode expand) {
        simulators::BmcOptions options;
        options.scenario_dir = folder_.string();
        options.expand = expand;
        simulators::BmcSimulator bmc(options);
        const ScanOutcome outcome = ScanImpatiently(OptionFor(bmc));
        EXPECT_EQ(bmc.Counts().sessions_made, 1);
        EXPECT_EQ(bmc.Counts().sessions_open, 0);
        return outcome;
    }

    void ExpectEveryVersion(const ScanOutcome& outcome) {
        for (const ExpectedMember& member : RecordedTree(folder_).Expected()) {
            if (member.version.empty()) {
                std::cout << "left out, no version: " << member.path << "\n";
                continue;
            }
            const bool found = std::any_of(outcome.identities.begin(), outcome.identities.end(),
                                           [&](const auto& identity) {
                                               return identity.InstanceID == member.id &&
                                                      identity.VersionString == member.version;
                                           });
            EXPECT_TRUE(found) << member.path << " " << member.version;
        }
    }

    std::filesystem::path folder_;
};

TEST_P(RecordedScanTest, EveryMemberWithAVersionIsFoundSingly) {
    const ScanOutcome outcome = ScanWith(simulators::ExpandMode::kUnsupported);
    ASSERT_TRUE(outcome.connection.IsSucceed()) << outcome.connection.message;
    EXPECT_EQ(outcome.machine_type_code, SUCCEED);
    EXPECT_EQ(outcome.bmc_type_code, SUCCEED);
    ExpectEveryVersion(outcome);
}

TEST_P(RecordedScanTest, EveryMemberWithAVersionIsFoundInline) {
    const ScanOutcome outcome = ScanWith(simulators::ExpandMode::kSupported);
    ASSERT_TRUE(outcome.connection.IsSucceed()) << outcome.connection.message;
    ExpectEveryVersion(outcome);
}

INSTANTIATE_TEST_SUITE_P(Services, RecordedScanTest,
                         ::testing::Values("dmtf-rackmount1", "ami-gigabyte-epyc", "openbmc-stock",
                                           "hpe-dl360-gen12"),
                         [](const auto& set) {
                             std::string name = set.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

}  // namespace
}  // namespace Vantix::redfish
