#include "platform/redfish/slot_rules.h"

#include <gtest/gtest.h>

#include "snapshot_builder.h"

namespace Vantix::redfish {

void PrintTo(const Slot& slot, std::ostream* out) {
    *out << "slot \"" << slot.number << "\" type " << slot.type;
}

namespace {

using enum DeviceKind;

Slot PartLocation(const std::string& fields, DeviceKind kind, const std::string& slot_type = "") {
    return SlotOfLocation(ParseObject(R"({"PartLocation":{)" + fields + "}}"), kind, slot_type);
}

TEST(SlotRulesTest, CardsInSlotsAreRecognised) {
    const Slot slot3{"3", kSlotPcie};
    EXPECT_EQ(slot3, PartLocation(R"("ServiceLabel":"PCIe Slot 3")", kPcieDevice));
    EXPECT_EQ(slot3, PartLocation(R"("ServiceLabel":"PCI-E Slot 3")", kNetworkAdapter));
    EXPECT_EQ(slot3, PartLocation(R"("ServiceLabel":"Slot=03")", kStorageController));
    EXPECT_EQ(slot3,
              PartLocation(R"("LocationType":"Slot","LocationOrdinalValue":3)", kPcieDevice));
    EXPECT_EQ(slot3, PartLocation(R"("LocationType":"Slot","ServiceLabel":"PCI 3")", kPcieDevice));
    EXPECT_EQ(slot3,
              PartLocation(R"("LocationType":"Slot","LocationOrdinalValue":"3")", kNetworkAdapter));
}

TEST(SlotRulesTest, SlotTypeOfThePcieSlotDecidesTheKind) {
    const std::pair<const char*, std::int32_t> cases[] = {
        {"FullLength", kSlotPcie}, {"HalfLength", kSlotPcie}, {"LowProfile", kSlotPcie},
        {"M2", kSlotM2Bay},        {"U2", kSlotDriveBay},     {"OCP3Small", kSlotOcp},
        {"OCP3Large", kSlotOcp},   {"OEM", kSlotPcie}};
    for (const auto& [slot_type, type] : cases) {
        const Slot slot = PartLocation(R"("LocationOrdinalValue":2)", kPcieDevice, slot_type);
        EXPECT_EQ((Slot{"2", type}), slot) << slot_type;
    }
}

TEST(SlotRulesTest, LabelsOfSpecialSlotsAreRecognised) {
    const std::pair<const char*, Slot> cases[] = {
        {"OCP Slot 2", {"2", kSlotOcp}},
        {"OCP Slot A", {"A", kSlotOcp}},
        {"M.2 Slot 1", {"1", kSlotM2Bay}},
        {"7mm Bay 1", {"1", kSlot7mmBay}},
        {"PCI Slot 4", {"4", kSlotPci}},
        {"Retimer Slot 5", {"5", kSlotRetimer}},
        {"OCP Retimer Slot 5", {"5", kSlotRetimerOcp}},
        {"Riser Retimer Slot 5", {"5", kSlotRetimerRiser}},
        {"CFF Retimer Slot 5", {"5", kSlotRetimerCff}},
    };
    for (const auto& [label, slot] : cases)
        EXPECT_EQ(slot, SlotOfLabel(label, kPcieDevice)) << label;
}

TEST(SlotRulesTest, DrivesTakeTheBayOfALongLabel) {
    EXPECT_EQ((Slot{"1", kSlotDriveBay}), SlotOfLabel("Slot=14:Port=2:Box=1:Bay=1", kDrive));
    EXPECT_EQ((Slot{"7", kSlotDriveBay}), SlotOfLabel("Drive Bay 7", kDrive));
    EXPECT_EQ((Slot{"0", kSlotDriveBay}), SlotOfLabel("Disk 0", kDrive));
    EXPECT_EQ((Slot{"2", kSlotDriveBay}),
              PartLocation(R"("LocationType":"Bay","LocationOrdinalValue":2)", kDrive));
    EXPECT_EQ((Slot{"1", kSlotM2Bay}), SlotOfLabel("M.2 Bay 1", kDrive));
}

TEST(SlotRulesTest, PartBehindACardIsNotInTheCardsSlot) {
    EXPECT_EQ(Slot{}, SlotOfLabel("Slot=14:Port=2:Box=1", kPcieDevice));
    EXPECT_EQ((Slot{"14", kSlotPcie}), SlotOfLabel("Slot=14", kPcieDevice));
}

TEST(SlotRulesTest, PowerSuppliesTakeThePrintedNumberBeforeTheOrdinal) {
    EXPECT_EQ(
        (Slot{"1", kSlotPsu}),
        PartLocation(R"("ServiceLabel":"PSU 1","LocationType":"Bay","LocationOrdinalValue":0)",
                     kPowerSupply));
    EXPECT_EQ((Slot{"2", kSlotPsu}), SlotOfLabel("Power Supply Bay 2", kPowerSupply));
    EXPECT_EQ((Slot{"2", kSlotPsu}), SlotOfLabel("PSU2", kPowerSupply));
}

TEST(SlotRulesTest, OlderInfoTextIsALabel) {
    EXPECT_EQ((Slot{"5", kSlotDriveBay}),
              SlotOfLocation(ParseObject(R"({"Info":"Bay 5","InfoFormat":"Bay"})"), kDrive));
}

TEST(SlotRulesTest, WhatIsOnTheBoardHasNoSlot) {
    EXPECT_EQ(Slot{}, SlotOfLabel("System Board", kPcieDevice));
    EXPECT_EQ(Slot{}, SlotOfLabel("Embedded LOM 1", kNetworkAdapter));
    EXPECT_EQ(Slot{}, PartLocation(R"("LocationType":"Embedded","LocationOrdinalValue":1)",
                                   kNetworkAdapter));
    EXPECT_EQ(Slot{}, SlotOfLabel("CPU 1", kPcieDevice));
}

TEST(SlotRulesTest, NothingToldGivesNoSlot) {
    for (const DeviceKind kind : {kNetworkAdapter, kDrive, kPowerSupply, kMemory}) {
        EXPECT_FALSE(SlotOfLabel("", kind).IsKnown());
        EXPECT_FALSE(SlotOfLocation({}, kind).IsKnown());
        EXPECT_FALSE(
            PartLocation(R"("ServiceLabel":null,"LocationOrdinalValue":-1)", kind).IsKnown());
        EXPECT_FALSE(SlotOfLocation(ParseObject(R"({"PartLocation":[1]})"), kind).IsKnown());
    }
}

TEST(SlotRulesTest, OnlyPureLabelsCountAsLabels) {
    for (const char* text : {"PCIe Slot 3", "Slot 17", "Bay 2", "OCP Slot 1", "PSU 1"}) {
        EXPECT_TRUE(IsSlotLabel(text)) << text;
    }
    for (const char* text : {"", "3", "Slot", "Controller in Slot 3", "Example Slot 3 Adapter",
                             "Slot 3 Firmware", "SSD 960"}) {
        EXPECT_FALSE(IsSlotLabel(text)) << text;
    }
}

}  // namespace
}  // namespace Vantix::redfish
