#include "platform/cim/software_reader.h"

#include <gtest/gtest.h>

#include "instance_builder.h"

namespace Vantix::cim {
namespace {

std::vector<std::string> Ids(const CimInventory& inventory) {
    std::vector<std::string> ids;
    for (const auto& identity : inventory.identities) ids.push_back(identity.SoftwareID);
    return ids;
}

using TextList = std::vector<std::string>;

TEST(CimSoftwareReaderTest, TextsAreTakenOver) {
    const auto identity = ReadSoftwareIdentity(AnInstance("EX", "k")
                                                   .With("Name", "BMC")
                                                   .With("ElementName", "Controller")
                                                   .With("Description", "d")
                                                   .With("Manufacturer", "Example")
                                                   .With("InstanceID", "EX:1")
                                                   .With("AssociatedAdapterSlot", "3")
                                                   .With("SerialNumber", "s")
                                                   .With("PartNumber", "p"));

    EXPECT_EQ(identity.Name, "BMC");
    EXPECT_EQ(identity.ElementName, "Controller");
    EXPECT_EQ(identity.Description, "d");
    EXPECT_EQ(identity.Manufacturer, "Example");
    EXPECT_EQ(identity.InstanceID, "EX:1");
    EXPECT_EQ(identity.AssociatedAdapterSlot, "3");
    EXPECT_EQ(identity.SerialNumber, "s");
    EXPECT_EQ(identity.PartNumber, "p");
}

TEST(CimSoftwareReaderTest, MissingNameIsTheElementName) {
    EXPECT_EQ(ReadSoftwareIdentity(AnInstance("EX", "k").With("ElementName", "e")).Name, "e");
}

TEST(CimSoftwareReaderTest, FirstClassificationCounts) {
    const auto identity =
        ReadSoftwareIdentity(AnInstance("EX", "k").WithArray("Classifications", {"10", "6"}));

    EXPECT_EQ(identity.Classifications, "10");
}

TEST(CimSoftwareReaderTest, SingleClassificationCounts) {
    EXPECT_EQ(
        ReadSoftwareIdentity(AnInstance("EX", "k").With("Classifications", "6")).Classifications,
        "6");
}

TEST(CimSoftwareReaderTest, IdentityInformationAndOperatingSystemsAreKept) {
    const auto identity =
        ReadSoftwareIdentity(AnInstance("EX", "k")
                                 .WithArray("IdentityInfoValue", {"v"})
                                 .WithArray("IdentityInfoType", {"EX:Type"})
                                 .WithArray("TargetOperatingSystems", {"36", "67"}));

    EXPECT_EQ(identity.IdentityInfoValue, "v");
    EXPECT_EQ(identity.IdentityInfoType, "EX:Type");
    EXPECT_EQ(identity.TargetOperatingSystems, "36");
}

TEST(CimSoftwareReaderTest, VersionTextWinsOverNumbers) {
    const auto identity = ReadSoftwareIdentity(
        AnInstance("EX", "k").With("VersionString", "2.0a").With("MajorVersion", "9"));

    EXPECT_EQ(identity.VersionString, "2.0a");
}

TEST(CimSoftwareReaderTest, NullVersionTextIsBuiltFromNumbers) {
    const auto identity = ReadSoftwareIdentity(AnInstance("EX", "k")
                                                   .WithNull("VersionString")
                                                   .With("MajorVersion", "1")
                                                   .With("MinorVersion", "7")
                                                   .With("RevisionNumber", "3")
                                                   .With("BuildNumber", "0"));

    EXPECT_EQ(identity.VersionString, "1.7.3.0");
}

TEST(CimSoftwareReaderTest, MissingNumbersEndTheVersion) {
    const auto identity = ReadSoftwareIdentity(AnInstance("EX", "k")
                                                   .With("MajorVersion", "1")
                                                   .With("MinorVersion", "7")
                                                   .With("BuildNumber", "12"));

    EXPECT_EQ(identity.VersionString, "1.7");
}

TEST(CimSoftwareReaderTest, LargeBuildNumberIsUsedWhereSaid) {
    const auto identity = ReadSoftwareIdentity(AnInstance("EX", "k")
                                                   .With("MajorVersion", "1")
                                                   .With("MinorVersion", "2")
                                                   .With("RevisionNumber", "3")
                                                   .With("IsLargeBuildNumber", "TRUE")
                                                   .With("LargeBuildNumber", "123456789")
                                                   .With("BuildNumber", "0"));

    EXPECT_EQ(identity.VersionString, "1.2.3.123456789");
}

TEST(CimSoftwareReaderTest, NoVersionAtAllStaysEmpty) {
    EXPECT_EQ(ReadSoftwareIdentity(AnInstance("EX", "k")).VersionString, "");
}

TEST(CimSoftwareReaderTest, SoftwareIdIsTheIdentityInformationOfThatType) {
    const auto identity =
        ReadSoftwareIdentity(AnInstance("EX", "k")
                                 .WithArray("IdentityInfoType", {"EX:Model", "EX:SoftwareID"})
                                 .WithArray("IdentityInfoValue", {"m", "UEFI"}));

    EXPECT_EQ(identity.SoftwareID, "UEFI");
}

TEST(CimSoftwareReaderTest, OwnSoftwareIdWins) {
    EXPECT_EQ(ReadSoftwareIdentity(Software("BMC").With("SoftwareID", "OSSA")).SoftwareID, "OSSA");
}

TEST(CimSoftwareReaderTest, SoftwareIdFallsBackToNameAndInstance) {
    EXPECT_EQ(ReadSoftwareIdentity(AnInstance("EX", "k").With("ElementName", "e")).SoftwareID, "e");
    EXPECT_EQ(ReadSoftwareIdentity(AnInstance("EX", "k").With("InstanceID", "i")).SoftwareID, "i");
}

TEST(CimSoftwareReaderTest, UpdateFlagIsOneZeroOrUnknown) {
    const auto flag = [](const std::string& text) {
        return ReadSoftwareIdentity(AnInstance("EX", "k").With("IsPLDMUpdateSupported", text))
            .IsPLDMUpdateSupported;
    };
    EXPECT_EQ(flag("TRUE"), "1");
    EXPECT_EQ(flag("false"), "0");
    EXPECT_EQ(flag("maybe"), "");
}

TEST(CimSoftwareReaderTest, SlotTypeIsANumberOrZero) {
    EXPECT_EQ(ReadSoftwareIdentity(AnInstance("EX", "k").With("SlotType", "3")).SlotType, 3);
    EXPECT_EQ(ReadSoftwareIdentity(AnInstance("EX", "k").With("SlotType", "x")).SlotType, 0);
}

TEST(CimSoftwareReaderTest, SlotWithoutKindIsAnExpansionSlot) {
    EXPECT_EQ(
        ReadSoftwareIdentity(AnInstance("EX", "k").With("AssociatedAdapterSlot", "4")).SlotType, 7);
    EXPECT_EQ(ReadSoftwareIdentity(
                  AnInstance("EX", "k").With("AssociatedAdapterSlot", "4").With("SlotType", "9"))
                  .SlotType,
              9);
}

TEST(CimSoftwareReaderTest, DateIsCutToTheDay) {
    EXPECT_EQ(DateOf("20240131120000.000000+060"), "2024-01-31");
    EXPECT_EQ(DateOf("2024-01-31"), "2024-01-31");
    EXPECT_EQ(DateOf("2024013112000x.000000+060"), "2024013112000x.000000+060");
    EXPECT_EQ(DateOf(""), "");
}

TEST(CimSoftwareReaderTest, OnlyInstalledSoftwareComesWhereThatIsTold) {
    CimSnapshot snapshot;
    snapshot.software = {Software("a"), Software("b")};
    snapshot.installed = {Installed("system", "b")};

    const CimInventory inventory = ReadSoftware(snapshot);

    EXPECT_EQ(Ids(inventory), (TextList{"b"}));
    EXPECT_EQ(inventory.not_installed, (TextList{"a: no association names it as installed"}));
}

TEST(CimSoftwareReaderTest, InstalledAssociationWinsOverTheOther) {
    CimSnapshot snapshot;
    snapshot.software = {Software("a"), Software("b")};
    snapshot.installed = {Installed("system", "b")};
    snapshot.element_software = {Element("system", "a", {"2"})};

    EXPECT_EQ(Ids(ReadSoftware(snapshot)), (TextList{"b"}));
}

TEST(CimSoftwareReaderTest, ElementAssociationNamesCurrentSoftware) {
    CimSnapshot snapshot;
    snapshot.software = {Software("now"), Software("later"), Software("silent"), Software("loose")};
    snapshot.element_software = {Element("s", "now", {"2", "4"}), Element("s", "later", {"3"}),
                                 Element("s", "silent")};

    EXPECT_EQ(Ids(ReadSoftware(snapshot)), (TextList{"now", "silent"}));
}

TEST(CimSoftwareReaderTest, WithoutAssociationsEverythingIsInstalled) {
    CimSnapshot snapshot;
    snapshot.software = {Software("a"), Software("b")};

    EXPECT_EQ(Ids(ReadSoftware(snapshot)), (TextList{"a", "b"}));
}

TEST(CimSoftwareReaderTest, InstanceThatCallsItselfAvailableIsNotInstalled) {
    for (const std::string id : {"EX:AVAILABLE#701", "EX:PREVIOUS#701", "EX-Staged-1"}) {
        CimSnapshot snapshot;
        snapshot.software = {Software(id)};
        snapshot.installed = {Installed("s", id)};
        EXPECT_TRUE(ReadSoftware(snapshot).identities.empty()) << id;
    }
}

TEST(CimSoftwareReaderTest, StatusTellsWhatIsNotInstalled) {
    CimSnapshot snapshot;
    snapshot.software = {Software("a").With("Status", "Available"),
                         Software("b").With("Status", "OK"),
                         Software("c").With("SoftwareStatus", "Rollback")};

    EXPECT_EQ(Ids(ReadSoftware(snapshot)), (TextList{"b"}));
}

TEST(CimSoftwareReaderTest, InstanceListedTwiceComesOnce) {
    CimSnapshot snapshot;
    snapshot.software = {Software("a"), Software("a"), Software("b")};

    EXPECT_EQ(Ids(ReadSoftware(snapshot)), (TextList{"a", "b"}));
}

TEST(CimSoftwareReaderTest, InstancesWithoutAnyNameAreAllKept) {
    CimSnapshot snapshot;
    CimInstance nameless;
    nameless.properties["ElementName"] = {"n"};
    snapshot.software = {nameless, nameless};

    EXPECT_EQ(ReadSoftware(snapshot).identities.size(), 2U);
}

TEST(CimSoftwareReaderTest, UnnamedInstanceIsJoinedByItsInstanceId) {
    CimSnapshot snapshot;
    CimInstance unnamed = Software("a");
    unnamed.name = {};
    snapshot.software = {unnamed, Software("b")};
    snapshot.installed = {Installed("s", "a")};

    EXPECT_EQ(Ids(ReadSoftware(snapshot)), (TextList{"a"}));
}

TEST(CimSoftwareReaderTest, ComponentsWithoutVersionAreListedAndCounted) {
    CimSnapshot snapshot;
    snapshot.software = {Software("a").With("VersionString", ""),
                         Software("b").With("VersionString", "N/A"), Software("c")};

    const CimInventory inventory = ReadSoftware(snapshot);

    EXPECT_EQ(inventory.identities.size(), 3U);
    EXPECT_EQ(inventory.without_version, 2);
    EXPECT_EQ(inventory.keys.size(), 3U);
}

}  // namespace
}  // namespace Vantix::cim
