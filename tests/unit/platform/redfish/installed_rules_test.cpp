#include "platform/redfish/installed_rules.h"

#include <gtest/gtest.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {
namespace {

InstallState StateOf(const std::string& json) {
    return InstallStateOf(ParseObject(json));
}

InstallState StateOfId(const std::string& id) {
    return StateOf(R"({"Id":")" + id + "\"}");
}

TEST(InstalledRulesTest, PrefixOfTheIdDecides) {
    const std::pair<const char*, InstallState> cases[] = {
        {"Installed-0-5.10", InstallState::kInstalled},
        {"Current-0-5.10", InstallState::kInstalled},
        {"Previous-0-5.00", InstallState::kFormer},
        {"previous_5.00", InstallState::kFormer},
        {"Rollback-5.00", InstallState::kFormer},
        {"Available-0-5.20", InstallState::kNotYet},
        {"AVAILABLE:5.20", InstallState::kNotYet},
        {"Staged-5.20", InstallState::kNotYet},
        {"Pending.5.20", InstallState::kNotYet},
        {"Next 5.20", InstallState::kNotYet},
        {"BMC", InstallState::kInstalled},
        {"", InstallState::kInstalled}};
    for (const auto& [id, state] : cases) EXPECT_EQ(state, StateOfId(id)) << id;
}

TEST(InstalledRulesTest, PrefixNeedsASeparator) {
    for (const char* id :
         {"Previously", "AvailableMemory", "Previous", "Nextgen", "NotPrevious-1"}) {
        EXPECT_EQ(InstallState::kInstalled, StateOfId(id)) << id;
    }
}

TEST(InstalledRulesTest, PrefixOfTheNameCountsToo) {
    EXPECT_EQ(InstallState::kFormer, StateOf(R"({"Id":"3","Name":"Previous BIOS"})"));
    EXPECT_EQ(InstallState::kInstalled, StateOf(R"({"Id":"3","Name":"BIOS Previous"})"));
}

TEST(InstalledRulesTest, SoftwareStatusCountsAlsoBelowOem) {
    EXPECT_EQ(InstallState::kNotYet, StateOf(R"({"SoftwareStatus":"Available"})"));
    EXPECT_EQ(InstallState::kFormer, StateOf(R"({"Oem":{"X":{"SoftwareStatus":"Previous"}}})"));
    EXPECT_EQ(InstallState::kInstalled, StateOf(R"({"Oem":{"X":{"SoftwareStatus":"Installed"}}})"));
    EXPECT_EQ(InstallState::kInstalled,
              StateOf(R"({"Oem":{"X":["Previous"]},"SoftwareStatus":{}})"));
}

TEST(InstalledRulesTest, OnlyTheStateAbsentMeansNotPresent) {
    EXPECT_EQ(InstallState::kNotPresent, StateOf(R"({"Status":{"State":"Absent"}})"));
    for (const char* state : {"Enabled", "Disabled", "StandbyOffline", "StandbySpare", "Updating",
                              "UnavailableOffline", "Starting", ""}) {
        EXPECT_EQ(InstallState::kInstalled,
                  StateOf(R"({"Status":{"State":")" + std::string(state) + "\"}}"))
            << state;
    }
    EXPECT_EQ(InstallState::kInstalled, StateOf(R"({"Status":null})"));
}

TEST(InstalledRulesTest, EveryOtherStateHasAText) {
    EXPECT_EQ("", InstallStateText(InstallState::kInstalled));
    for (const auto state :
         {InstallState::kFormer, InstallState::kNotYet, InstallState::kNotPresent}) {
        EXPECT_NE("", InstallStateText(state));
    }
}

TEST(InstalledRulesTest, BackupsAreToldByWordsOrStandby) {
    for (const char* json :
         {R"({"Id":"BMC-Backup"})", R"({"Name":"Redundant System ROM"})",
          R"({"Description":"Inactive image"})", R"({"SoftwareId":"UEFI_BACKUP"})",
          R"({"Name":"Secondary BIOS"})", R"({"Status":{"State":"StandbySpare"}})"}) {
        EXPECT_TRUE(CallsItselfBackup(ParseObject(json))) << json;
    }
    for (const char* json : {R"({"Name":"BMC"})", "{}", R"({"Status":{"State":"Enabled"}})"}) {
        EXPECT_FALSE(CallsItselfBackup(ParseObject(json))) << json;
    }
}

TEST(InstalledRulesTest, IdBehindPrefixTellsWhichPrefix) {
    bool is_current = false;
    EXPECT_EQ("1-7.01", IdBehindPrefix("Current-1-7.01", is_current));
    EXPECT_TRUE(is_current);
    EXPECT_EQ("1-7.01", IdBehindPrefix("installed-1-7.01", is_current));
    EXPECT_FALSE(is_current);
    EXPECT_EQ("", IdBehindPrefix("BMC", is_current));
}

}  // namespace
}  // namespace Vantix::redfish
