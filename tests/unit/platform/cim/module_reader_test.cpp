#include "platform/cim/module_reader.h"

#include <gtest/gtest.h>

#include "instance_builder.h"

namespace Vantix::cim {
namespace {

using TextList = std::vector<std::string>;

CimInstance System(const std::string& key, const std::string& dedicated,
                   const std::string& name = {}) {
    return AnInstance("EX_System", key)
        .WithArray("Dedicated", {dedicated})
        .With("ElementName", name);
}

CimInstance PackageOf(const std::string& package, const std::string& system) {
    return AnInstance("EX_Pack", package + system)
        .Referring("Antecedent", package)
        .Referring("Dependent", system);
}

CimInstance InSlot(const std::string& slot, const std::string& package) {
    return AnInstance("EX_InSlot", slot + package)
        .Referring("Antecedent", slot)
        .Referring("Dependent", package);
}

TextList Ids(const ModuleComponents& module) {
    TextList ids;
    for (const auto& component : module.components) ids.push_back(component.SoftwareID);
    return ids;
}

// A manager, a switch whose card stands in slot 4, and firmware on both.
CimSnapshot ChassisWithSwitch() {
    CimSnapshot snapshot;
    snapshot.systems = {System("mm", "29"), System("sw", "5")};
    snapshot.packages = {
        AnInstance("EX_Card", "card").With("Model", "SW").With("SerialNumber", "1")};
    snapshot.slots = {AnInstance("EX_Slot", "slot").With("Number", "4")};
    snapshot.system_packages = {PackageOf("card", "sw")};
    snapshot.packages_in_slot = {InSlot("slot", "card")};
    snapshot.software = {Software("m"), Software("s")};
    snapshot.installed = {Installed("mm", "m"), Installed("sw", "s")};
    return snapshot;
}

TEST(CimModuleReaderTest, EachSystemHasItsOwnSoftware) {
    const CimSnapshot snapshot = ChassisWithSwitch();

    EXPECT_EQ(Ids(ReadChassisModule(snapshot)), (TextList{"m"}));
    ASSERT_TRUE(ReadSwitch(snapshot, "4").has_value());
    EXPECT_EQ(Ids(*ReadSwitch(snapshot, "4")), (TextList{"s"}));
}

TEST(CimModuleReaderTest, SwitchIsDescribedByItsCard) {
    const auto module = ReadSwitch(ChassisWithSwitch(), "4");

    ASSERT_TRUE(module.has_value());
    EXPECT_EQ(module->machine_type, "SW");
    EXPECT_EQ(module->serial_number, "1");
}

TEST(CimModuleReaderTest, SwitchWithoutCardIsDescribedByItself) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.system_packages.clear();
    snapshot.systems[1].properties["Model"] = {"own"};
    snapshot.systems[1].properties["BayNumber"] = {"4"};

    const auto module = ReadSwitch(snapshot, "4");

    ASSERT_TRUE(module.has_value());
    EXPECT_EQ(module->machine_type, "own");
}

TEST(CimModuleReaderTest, OtherBaysHoldNoSwitch) {
    for (const char* bay : {"0", "3", "40", "14", "", "four", "-4"}) {
        EXPECT_FALSE(ReadSwitch(ChassisWithSwitch(), bay).has_value()) << bay;
    }
}

TEST(CimModuleReaderTest, BayZeroIsABayLikeAnyOther) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.slots[0].properties["Number"] = {"0"};

    EXPECT_TRUE(ReadSwitch(snapshot, "0").has_value());
}

TEST(CimModuleReaderTest, LeadingZerosDoNotCount) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.slots[0].properties["Number"] = {"04"};

    EXPECT_TRUE(ReadSwitch(snapshot, "4").has_value());
    EXPECT_TRUE(ReadSwitch(snapshot, "004").has_value());
}

TEST(CimModuleReaderTest, BayIsReadFromNamesWhereNoSlotTells) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.slots.clear();
    snapshot.systems[1] = System("sw", "5", "I/O module Bay 7");

    EXPECT_TRUE(ReadSwitch(snapshot, "7").has_value());
    EXPECT_FALSE(ReadSwitch(snapshot, "4").has_value());
}

TEST(CimModuleReaderTest, SlotWinsOverName) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.systems[1] = System("sw", "5", "bay 7");

    EXPECT_TRUE(ReadSwitch(snapshot, "4").has_value());
    EXPECT_FALSE(ReadSwitch(snapshot, "7").has_value());
}

TEST(CimModuleReaderTest, BladeInTheBayIsNoSwitch) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.systems[1] = System("sw", "0");

    EXPECT_FALSE(ReadSwitch(snapshot, "4").has_value());
}

TEST(CimModuleReaderTest, SoftwareOfACardBelongsToItsSystem) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.installed.clear();
    snapshot.element_software = {Element("card", "s", {"2"}), Element("mm", "m", {"2"})};

    EXPECT_EQ(Ids(ReadChassisModule(snapshot)), (TextList{"m"}));
    EXPECT_EQ(Ids(*ReadSwitch(snapshot, "4")), (TextList{"s"}));
}

TEST(CimModuleReaderTest, SoftwareThatNobodyPlacesIsTheModules) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.installed.clear();

    EXPECT_EQ(Ids(ReadChassisModule(snapshot)), (TextList{"m", "s"}));
    EXPECT_TRUE(Ids(*ReadSwitch(snapshot, "4")).empty());
}

TEST(CimModuleReaderTest, BladesFirmwareIsNotTheModules) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.systems.push_back(System("blade", "0"));
    snapshot.software.push_back(Software("b"));
    snapshot.installed.push_back(Installed("blade", "b"));

    EXPECT_EQ(Ids(ReadChassisModule(snapshot)), (TextList{"m"}));
}

TEST(CimModuleReaderTest, WithoutAChassisManagerOnlySwitchesAreLeftOut) {
    CimSnapshot snapshot = ChassisWithSwitch();
    snapshot.systems[0] = System("mm", "0");

    EXPECT_EQ(Ids(ReadChassisModule(snapshot)), (TextList{"m"}));
}

TEST(CimModuleReaderTest, EmptyServiceGivesAnEmptyModule) {
    const ModuleComponents module = ReadChassisModule(CimSnapshot());

    EXPECT_TRUE(module.components.empty());
    EXPECT_EQ(module.machine_type, "");
    EXPECT_FALSE(ReadSwitch(CimSnapshot(), "1").has_value());
}

}  // namespace
}  // namespace Vantix::cim
