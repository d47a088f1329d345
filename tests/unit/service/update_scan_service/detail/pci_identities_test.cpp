#include "service/update_scan_service/detail/pci_identities.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "doubles/log_double.h"
#include "doubles/platform_double.h"
#include "support/builders.h"

namespace service::detail {
namespace {

using testing::DoAll;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;
using testing::SetArgReferee;

PciInfo ADevice(const std::string& id, const std::string& slot) {
    PciInfo device;
    device.ShortName = "name of " + id;
    device.IdPart1 = id;
    device.Slot = slot;
    return device;
}

// ---- conversion

TEST(ConvertPciDeviceTest, TextsGoToTheirPlaces) {
    PciInfo device;
    device.ShortName = "short";
    device.IdPart1 = "8086abcd";
    device.IdPart2 = "17aa0001";
    device.Description = "a longer description";
    device.Version = "1.2";
    const auto identity = ConvertPciDevice(device);
    EXPECT_EQ(identity.Description, "a longer description");
    EXPECT_EQ(identity.Name, "a longer description");
    EXPECT_EQ(identity.SoftwareID, "8086abcd17aa0001");
    EXPECT_EQ(identity.VersionString, "1.2");
    EXPECT_EQ(identity.IsPLDMUpdateSupported, "0");
    EXPECT_EQ(identity.Classifications, "");
    EXPECT_EQ(identity.InstanceID, "");
}

TEST(ConvertPciDeviceTest, DescriptionNamesTheDeviceOnlyWhenStrictlyLonger) {
    PciInfo device;
    device.ShortName = "short";
    device.Description = "equal";
    EXPECT_EQ(ConvertPciDevice(device).Name, "short");
    device.Description = "longer";
    EXPECT_EQ(ConvertPciDevice(device).Name, "longer");
    device.Description = "less";
    EXPECT_EQ(ConvertPciDevice(device).Name, "short");
    EXPECT_EQ(ConvertPciDevice(device).Description, "less");
}

TEST(ConvertPciDeviceTest, NamelessDeviceIsNamedByLabelsAndIdentifiers) {
    PciInfo device;
    device.Label2 = "two";
    device.Label3 = "three";
    device.IdPart1 = "8086";
    device.IdPart2 = "17aa";
    EXPECT_EQ(ConvertPciDevice(device).Name, "three-two-8086-17aa");
    EXPECT_EQ(ConvertPciDevice(PciInfo()).Name, "---");
}

TEST(ConvertPciDeviceTest, MissingVersionReadsNotAvailable) {
    EXPECT_EQ(ConvertPciDevice(PciInfo()).VersionString, "N/A");
}

TEST(ConvertPciDeviceTest, SlotSetsNumberAndType) {
    const auto identity = ConvertPciDevice(ADevice("8086", "4"));
    EXPECT_EQ(identity.AssociatedAdapterSlot, "4");
    EXPECT_EQ(identity.SlotType, 7);
}

TEST(ConvertPciDeviceTest, SlotZeroAndNoSlotLeaveBothUnset) {
    for (const char* slot : {"0", ""}) {
        const auto identity = ConvertPciDevice(ADevice("8086", slot));
        EXPECT_EQ(identity.AssociatedAdapterSlot, "");
        EXPECT_EQ(identity.SlotType, 0);
    }
}

TEST(ConvertPciDeviceTest, DoubleZeroIsASlot) {
    const auto identity = ConvertPciDevice(ADevice("8086", "00"));
    EXPECT_EQ(identity.AssociatedAdapterSlot, "00");
    EXPECT_EQ(identity.SlotType, 7);
}

// ---- all devices of the host

class GetPciSoftwareIdentityTest : public testing::Test {
  protected:
    void HostHas(int code, const std::vector<PciInfo>& devices) {
        EXPECT_CALL(platform_, GetPciInfo(IsEmpty()))
            .WillOnce(DoAll(SetArgReferee<0>(devices), Return(code)));
    }

    std::vector<std::string> SlotsAfter(int expected_code) {
        EXPECT_EQ(GetPciSoftwareIdentity(identities_), expected_code);
        std::vector<std::string> slots;
        for (const auto& identity : identities_) slots.push_back(identity.AssociatedAdapterSlot);
        return slots;
    }

    doubles::LogCapture log_;
    doubles::StrictPlatform platform_;
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> identities_;
};

TEST_F(GetPciSoftwareIdentityTest, FunctionsOfOneIdentifierInOneSlotAreOneIdentity) {
    HostHas(0, {ADevice("8086", "1"), ADevice("8086", "1")});
    EXPECT_THAT(SlotsAfter(0), ElementsAre("1"));
}

TEST_F(GetPciSoftwareIdentityTest, OneIdentifierInTwoSlotsIsTwoIdentities) {
    HostHas(0, {ADevice("8086", "1"), ADevice("8086", "2")});
    EXPECT_THAT(SlotsAfter(0), ElementsAre("1", "2"));
}

TEST_F(GetPciSoftwareIdentityTest, IdentifierAndSlotAreComparedEachForItself) {
    HostHas(0, {ADevice("8086", "12"), ADevice("80861", "2")});
    EXPECT_THAT(SlotsAfter(0), ElementsAre("12", "2"));
}

TEST_F(GetPciSoftwareIdentityTest, IdentifiersAreComparedWithTheirCase) {
    HostHas(0, {ADevice("80ab", "1"), ADevice("80AB", "1")});
    EXPECT_THAT(SlotsAfter(0), ElementsAre("1", "1"));
}

TEST_F(GetPciSoftwareIdentityTest, FirstDeviceOfAGroupWins) {
    PciInfo second = ADevice("8086", "1");
    second.ShortName = "another name";
    HostHas(0, {ADevice("8086", "1"), second});
    EXPECT_THAT(SlotsAfter(0), ElementsAre("1"));
    EXPECT_EQ(identities_[0].Name, "name of 8086");
}

TEST_F(GetPciSoftwareIdentityTest, NoDeviceIsMinusOne) {
    HostHas(0, {});
    EXPECT_THAT(SlotsAfter(-1), IsEmpty());
}

TEST_F(GetPciSoftwareIdentityTest, DevicesCountWhateverTheLibraryReturns) {
    HostHas(-1, {ADevice("8086", "1")});
    EXPECT_THAT(SlotsAfter(0), ElementsAre("1"));
}

TEST_F(GetPciSoftwareIdentityTest, ListThatHoldsSomethingAlreadyIsNeverMinusOne) {
    identities_ = {support::AnIdentity().SoftwareId("8086").Slot("1")};
    HostHas(0, {ADevice("8086", "1")});
    EXPECT_THAT(SlotsAfter(0), ElementsAre("1"));
}

TEST_F(GetPciSoftwareIdentityTest, WayInAndWayOutAreLogged) {
    EXPECT_CALL(platform_, GetPciInfo(IsEmpty())).WillOnce([&](auto&) {
        EXPECT_THAT(log_.Texts(4), ElementsAre("Enter GetPciSoftwareIdentity()"));
        return -1;
    });
    EXPECT_THAT(SlotsAfter(-1), IsEmpty());
    EXPECT_THAT(log_.Texts(4),
                ElementsAre("Enter GetPciSoftwareIdentity()", "Exit GetPciSoftwareIdentity()"));
}

}  // namespace
}  // namespace service::detail
