#include "platform/cim/system_reader.h"

#include <gtest/gtest.h>

#include "instance_builder.h"

namespace Vantix::cim {
namespace {

using TextPair = std::pair<std::string, std::string>;

InstanceBuilder DedicatedSystem(const std::string& key, const std::string& dedicated) {
    return AnInstance("EX_System", key).WithArray("Dedicated", {dedicated});
}

TEST(CimSystemReaderTest, DedicationTellsTheKindOfSystem) {
    EXPECT_TRUE(IsManagementController(DedicatedSystem("b", "28")));
    EXPECT_TRUE(IsChassisManager(DedicatedSystem("m", "29")));
    EXPECT_TRUE(IsSwitch(DedicatedSystem("s", "5")));
    EXPECT_TRUE(IsSwitch(DedicatedSystem("s", "6")));
    EXPECT_FALSE(IsSwitch(DedicatedSystem("h", "0")));
    EXPECT_FALSE(IsManagementController(DedicatedSystem("h", "0")));
}

TEST(CimSystemReaderTest, AnyOfSeveralDedicationsCounts) {
    EXPECT_TRUE(
        IsManagementController(AnInstance("EX_System", "b").WithArray("Dedicated", {"14", "28"})));
}

TEST(CimSystemReaderTest, ClassNameSpeaksOnlyWhereDedicationIsSilent) {
    EXPECT_TRUE(IsManagementController(AnInstance("EX_ManagementController", "b")));
    EXPECT_TRUE(IsSwitch(AnInstance("EX_SwitchSystem", "s").WithArray("Dedicated", {"1"})));
    EXPECT_FALSE(IsSwitch(AnInstance("EX_SwitchSystem", "s").WithArray("Dedicated", {"28"})));
}

TEST(CimSystemReaderTest, ModelFallsBackToSkuAndPartNumber) {
    EXPECT_EQ(ModelOf(AnInstance("EX", "p").With("Model", "m").With("SKU", "s")), "m");
    EXPECT_EQ(ModelOf(AnInstance("EX", "p").With("SKU", "s").With("PartNumber", "n")), "s");
    EXPECT_EQ(
        ModelOf(AnInstance("EX", "p").With("Model", "Default string").With("PartNumber", "n")),
        "n");
}

TEST(CimSystemReaderTest, MachineIsThatOfTheChassis) {
    CimSnapshot snapshot;
    snapshot.chassis = {AnInstance("EX_Chassis", "c").With("Model", "m").With("SerialNumber", "s")};

    EXPECT_EQ(ReadMachine(snapshot), (TextPair{"m", "s"}));
}

TEST(CimSystemReaderTest, EnclosureComesBeforeMainChassisBeforeOthers) {
    const auto chassis = [](const std::string& type) {
        return AnInstance("EX", type)
            .With("Model", "type " + type)
            .With("ChassisPackageType", type);
    };
    CimSnapshot snapshot;
    snapshot.chassis = {chassis("18"), chassis("17"), chassis("29")};
    EXPECT_EQ(ReadMachine(snapshot).first, "type 29");
    snapshot.chassis = {chassis("18"), chassis("23")};
    EXPECT_EQ(ReadMachine(snapshot).first, "type 23");
}

TEST(CimSystemReaderTest, ChassisThatSaysNothingIsPassedOver) {
    CimSnapshot snapshot;
    snapshot.chassis = {AnInstance("EX", "a").With("SerialNumber", "To be filled by O.E.M."),
                        AnInstance("EX", "b").With("SerialNumber", "s")};

    EXPECT_EQ(ReadMachine(snapshot), (TextPair{"", "s"}));
}

TEST(CimSystemReaderTest, SystemCompletesWhatTheChassisLacks) {
    CimSnapshot snapshot;
    snapshot.chassis = {AnInstance("EX", "a").With("Model", "m")};
    snapshot.systems = {DedicatedSystem("h", "0").With("Model", "other").With("SerialNumber", "s")};

    EXPECT_EQ(ReadMachine(snapshot), (TextPair{"m", "s"}));
}

TEST(CimSystemReaderTest, IdentifyingInformationIsSplitAtTheLastColon) {
    CimSnapshot snapshot;
    snapshot.systems = {
        DedicatedSystem("h", "0")
            .WithArray("IdentifyingDescriptions", {"CIM:GUID", "CIM:Model:SerialNumber"})
            .WithArray("OtherIdentifyingInfo", {"x:y", "Mod:el:SN1"})};

    EXPECT_EQ(ReadMachine(snapshot), (TextPair{"Mod:el", "SN1"}));
}

TEST(CimSystemReaderTest, UnevenIdentifyingInformationIsNoHarm) {
    CimSnapshot snapshot;
    snapshot.systems = {DedicatedSystem("h", "0").WithArray("IdentifyingDescriptions",
                                                            {"CIM:Model:SerialNumber", "x"}),
                        DedicatedSystem("g", "0")
                            .WithArray("IdentifyingDescriptions", {"CIM:Model:SerialNumber"})
                            .WithArray("OtherIdentifyingInfo", {"nocolon"})};

    EXPECT_EQ(ReadMachine(snapshot), TextPair());
}

TEST(CimSystemReaderTest, ControllersSerialIsNotTheMachines) {
    CimSnapshot snapshot;
    snapshot.systems = {DedicatedSystem("b", "28").With("SerialNumber", "bmc"),
                        DedicatedSystem("s", "5").With("SerialNumber", "switch")};

    EXPECT_EQ(ReadMachine(snapshot), TextPair());
}

TEST(CimSystemReaderTest, ControllerIsFoundAmongSystems) {
    CimSnapshot snapshot;
    snapshot.systems = {DedicatedSystem("h", "0"),
                        DedicatedSystem("b", "28").With("ElementName", "Ossa2")};

    ASSERT_NE(FindController(snapshot), nullptr);
    EXPECT_EQ(ReadControllerFacts(FindController(snapshot)).name, "Ossa2");
}

TEST(CimSystemReaderTest, NoControllerHasNoFactsButStillAKind) {
    EXPECT_EQ(FindController(CimSnapshot()), nullptr);
    EXPECT_EQ(redfish::BmcKindOf(ReadControllerFacts(nullptr)), redfish::kBmcKindOther);
}

TEST(CimSystemReaderTest, ThirdGenerationIsKnownByModelAndFirmware) {
    const CimInstance by_model = DedicatedSystem("b", "28").With("Model", "Tavro V3");
    const CimInstance by_firmware =
        DedicatedSystem("b", "28").With("ElementName", "Tavro").With("FirmwareVersion", "TV3 1.0");

    EXPECT_TRUE(redfish::IsThirdGenerationTavro(ReadControllerFacts(&by_model)));
    EXPECT_TRUE(redfish::IsThirdGenerationTavro(ReadControllerFacts(&by_firmware)));
}

}  // namespace
}  // namespace Vantix::cim
