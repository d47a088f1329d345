// The readers over recordings of real services. The recordings lie beside the project; where they
// are missing the tests say so.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/device_list_reader.h"
#include "platform/redfish/inventory_reader.h"
#include "platform/redfish/managed_system.h"
#include "platform/redfish/pmem_reader.h"
#include "platform/redfish/text_rules.h"
#include "recorded_tree.h"

namespace Vantix::redfish {
namespace {

struct RecordedSet {
    const char* name;
    const char* machine_type;
    const char* serial_number;
    const char* bmc_kind;
};

void PrintTo(const RecordedSet& set, std::ostream* out) {
    *out << set.name;
}

class RecordedSetsTest : public testing::TestWithParam<RecordedSet> {
  protected:
    void SetUp() override {
        const auto sets = RecordedSetsFolder();
        if (!sets) GTEST_SKIP() << "no recorded sets; set TARSEL_SHARED_MOCKUPS to their folder";
        folder_ = *sets / GetParam().name;
        ASSERT_TRUE(std::filesystem::exists(folder_ / "FIRMWARE.tsv")) << folder_;
    }

    std::filesystem::path folder_;
};

TEST_P(RecordedSetsTest, EveryMemberWithAVersionIsListedOnce) {
    const RecordedTree tree(folder_);
    const Inventory inventory = ReadInventory(tree.Snapshot());
    const auto expected = tree.Expected();
    ASSERT_FALSE(expected.empty());
    for (const ExpectedMember& member : expected) {
        const std::string software_id = member.software_id.empty() ? member.id : member.software_id;
        const auto count = std::count_if(
            inventory.identities.begin(), inventory.identities.end(), [&](const auto& identity) {
                return identity.InstanceID == member.id && identity.Name == member.name &&
                       identity.VersionString == member.version &&
                       identity.SoftwareID == software_id &&
                       identity.Caption == "Redfish FirmwareInventory";
            });
        EXPECT_EQ(1, count) << member.path;
    }
}

TEST_P(RecordedSetsTest, CompletionAddsNothingThatTheInventoryHas) {
    const RecordedTree tree(folder_);
    const Inventory inventory = ReadInventory(tree.Snapshot());
    const auto first_completed =
        inventory.identities.end() - static_cast<std::ptrdiff_t>(inventory.completed);
    for (auto added = first_completed; added != inventory.identities.end(); ++added) {
        RecordProperty(added->Caption + " " + added->InstanceID,
                       added->Name + " " + added->VersionString);
        for (auto listed = inventory.identities.begin(); listed != first_completed; ++listed) {
            EXPECT_FALSE(!added->SerialNumber.empty() &&
                         added->SerialNumber == listed->SerialNumber)
                << added->Name;
            EXPECT_FALSE(added->SoftwareID == listed->SoftwareID) << added->SoftwareID;
        }
    }
}

TEST_P(RecordedSetsTest, SystemAndBmcAreRecognised) {
    const ServerSnapshot snapshot = RecordedTree(folder_).Snapshot();
    const ManagedSystem managed = FindManagedSystem(snapshot);
    EXPECT_EQ(GetParam().machine_type, managed.machine_type);
    EXPECT_EQ(GetParam().serial_number, managed.serial_number);
    EXPECT_EQ("", managed.notice);
    EXPECT_EQ(GetParam().bmc_kind, BmcKindText(BmcKindOf(ReadBmcFacts(snapshot, managed.manager))));
}

TEST_P(RecordedSetsTest, TextsAreCleanAndListsArePrintable) {
    const ServerSnapshot snapshot = RecordedTree(folder_).Snapshot();
    for (const auto& identity : ReadInventory(snapshot).identities) {
        EXPECT_EQ(std::string::npos, identity.Name.find_first_of("\n\t")) << identity.Name;
        EXPECT_FALSE(identity.Classifications.empty());
    }
    const std::string list = ReadDeviceList(snapshot);
    EXPECT_FALSE(list.empty());
    EXPECT_EQ('\n', list.back());
    EXPECT_TRUE(ReadPersistentMemory(snapshot).empty());
}

INSTANTIATE_TEST_SUITE_P(
    Services, RecordedSetsTest,
    testing::Values(RecordedSet{"dmtf-rackmount1", "3500", "437XR1138R2", "BMC"},
                    RecordedSet{"ami-gigabyte-epyc", "H262-Z63-00", "GJG9NF512A000302", "AMI"},
                    RecordedSet{"openbmc-stock", "", "", "OpenBMC"},
                    RecordedSet{"hpe-dl360-gen12", "HPE ProLiant Compute DL360 Gen12 -- SIMULATED",
                                "3M1D2V13TW", "iLO"}),
    [](const auto& set) {
        std::string name = set.param.name;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

}  // namespace
}  // namespace Vantix::redfish
