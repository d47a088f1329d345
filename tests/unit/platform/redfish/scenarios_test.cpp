// The readers over the invented services that the simulator serves.
#include <gmock/gmock.h>

#include <algorithm>

#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/broadcom_switch_reader.h"
#include "platform/redfish/inventory_reader.h"
#include "platform/redfish/managed_system.h"
#include "recorded_tree.h"

namespace Vantix::redfish {
namespace {

using VantixOptions::SoftwareIdentity_;

ServerSnapshot Scenario(const std::string& name) {
    return RecordedTree(std::filesystem::path(TARSEL_SCENARIOS) / name).Snapshot();
}

const SoftwareIdentity_* Find(const Inventory& inventory, const std::string& instance_id) {
    const auto found =
        std::find_if(inventory.identities.begin(), inventory.identities.end(),
                     [&](const auto& identity) { return identity.InstanceID == instance_id; });
    return found == inventory.identities.end() ? nullptr : &*found;
}

TEST(ScenariosTest, ThirdGenerationTavroIsRecognised) {
    const ServerSnapshot snapshot = Scenario("tavro-v3");
    const ManagedSystem managed = FindManagedSystem(snapshot);
    const BmcFacts facts = ReadBmcFacts(snapshot, managed.manager);
    EXPECT_EQ("Tavro", BmcKindText(BmcKindOf(facts)));
    EXPECT_TRUE(IsThirdGenerationTavro(facts));
    EXPECT_EQ("example_25a", ReadReleaseName(managed.manager));
    EXPECT_EQ("Example TV300", managed.machine_type);
    EXPECT_TRUE(HasUpdatableDeviceBehindBroadcomSwitch(snapshot));
}

TEST(ScenariosTest, EnclosureGivesItsOwnFacts) {
    const ServerSnapshot snapshot = Scenario("enclosure-module");
    const ManagedSystem managed = FindManagedSystem(snapshot);
    EXPECT_EQ("Vesk", BmcKindText(BmcKindOf(ReadBmcFacts(snapshot, managed.manager))));
    EXPECT_EQ("Example DE400", managed.machine_type);
    EXPECT_EQ("EXDE0001", managed.serial_number);
}

TEST(ScenariosTest, AmiBmcIsRecognisedBehindABoardMakersName) {
    const ServerSnapshot snapshot = Scenario("amd-ami-bmc");
    const ManagedSystem managed = FindManagedSystem(snapshot);
    const BmcFacts facts = ReadBmcFacts(snapshot, managed.manager);
    EXPECT_EQ("AMI", BmcKindText(BmcKindOf(facts)));
    EXPECT_FALSE(IsThirdGenerationTavro(facts));
    EXPECT_FALSE(HasUpdatableDeviceBehindBroadcomSwitch(snapshot));
}

TEST(ScenariosTest, RackServersAdaptersStandInTheirSlots) {
    const Inventory inventory = ReadInventory(Scenario("rack-server"));
    struct Case {
        const char* instance_id;
        const char* slot;
        std::int32_t type;
    };
    for (const auto& [instance_id, slot, type] :
         {Case{"Slot1-Firmware", "1", 7}, Case{"Slot3-Firmware", "3", 7},
          Case{"Slot3-Bios", "3", 7}, Case{"Slot5-Firmware", "5", 7},
          Case{"Slot9-Firmware", "9", 9}, Case{"UEFI-Primary", "", 0}, Case{"FPGA-Main", "", 0}}) {
        const SoftwareIdentity_* identity = Find(inventory, instance_id);
        ASSERT_NE(nullptr, identity) << instance_id;
        EXPECT_EQ(slot, identity->AssociatedAdapterSlot) << instance_id;
        EXPECT_EQ(type, identity->SlotType) << instance_id;
    }
}

TEST(ScenariosTest, RackServersListIsCompleteWithoutDoubles) {
    const ServerSnapshot snapshot = Scenario("rack-server");
    const Inventory inventory = ReadInventory(snapshot);
    EXPECT_EQ(snapshot.firmware.size(), inventory.identities.size());
    EXPECT_EQ(0U, inventory.completed);
    EXPECT_TRUE(inventory.issues.empty());
}

TEST(ScenariosTest, ThinInventoryIsCompletedFromDevices) {
    const Inventory inventory = ReadInventory(Scenario("thin-inventory"));
    EXPECT_EQ(inventory.identities.size(), inventory.completed);
    std::vector<std::string> sources;
    for (const auto& identity : inventory.identities) {
        sources.push_back(identity.Caption);
        EXPECT_NE("", identity.VersionString) << identity.Name;
    }
    for (const char* source :
         {"Redfish ComputerSystem", "Redfish Manager", "Redfish NetworkAdapter", "Redfish Drive"}) {
        EXPECT_THAT(sources, testing::Contains(source));
    }
}

TEST(ScenariosTest, OddMembersCostOnlyThemselves) {
    const Inventory inventory = ReadInventory(Scenario("odd-members"));
    for (const char* dropped : {"Absent", "Available-0-5.20", "Previous-0-5.00", "Broken"}) {
        EXPECT_EQ(nullptr, Find(inventory, dropped)) << dropped;
    }
    for (const char* kept : {"Installed-0-5.10", "Current-1-7.01", "NullVersion", "NoId", "NoName",
                             "SameName-1", "SameName-2", "SlashAtEnd", "AbsoluteLink", "WrongCase",
                             "BrokenRelated", "TextRelated"}) {
        EXPECT_NE(nullptr, Find(inventory, kept)) << kept;
    }
    EXPECT_EQ("42", Find(inventory, "NumberVersion")->VersionString);
    EXPECT_EQ("2.0.1", Find(inventory, "PaddedVersion")->VersionString);
    EXPECT_EQ("", Find(inventory, "ObjectVersion")->VersionString);
    EXPECT_FALSE(inventory.issues.empty());
}

}  // namespace
}  // namespace Vantix::redfish
