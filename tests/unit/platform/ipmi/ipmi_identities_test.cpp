#include "platform/ipmi/ipmi_identities.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantix::ipmi {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

transport::DeviceId ADevice() {
    transport::DeviceId device;
    device.firmware_major = 3;
    device.firmware_minor = 0x10;
    device.auxiliary = {0x00, 0x00, 0x00, 0x11};
    return device;
}

FruDevice APowerSupply() {
    FruDevice device;
    device.locator = {"PSU1", 1, transport::kEntityPowerSupply, 2};
    device.data.product_name = "PSU 2000W";
    device.data.product_part_number = "EX-PSU-2000";
    device.data.product_version = "2.05";
    device.data.product_serial_number = "EXPS0001";
    return device;
}

TEST(IpmiIdentitiesTest, BmcHasItsVersionAsPrinted) {
    const auto identity = BmcIdentity(ADevice(), {});
    EXPECT_EQ(identity.Name, "BMC");
    EXPECT_EQ(identity.SoftwareID, "BMC");
    EXPECT_EQ(identity.VersionString, "3.10");
    EXPECT_EQ(identity.Classifications, "10");
}

TEST(IpmiIdentitiesTest, AuxiliaryBytesStandInTheDescription) {
    EXPECT_EQ(BmcIdentity(ADevice(), {}).Description,
              "BMC firmware (auxiliary revision 00 00 00 11)");
    EXPECT_EQ(BmcIdentity({}, {}).Description, "BMC firmware");
}

TEST(IpmiIdentitiesTest, ComponentIsNamedByItsDescription) {
    const auto identities = ComponentIdentities({{2, "BOOT", "2.17", {0, 0, 0, 1}}});
    ASSERT_THAT(identities, SizeIs(1));
    EXPECT_EQ(identities[0].Name, "BOOT");
    EXPECT_EQ(identities[0].SoftwareID, "BOOT");
    EXPECT_EQ(identities[0].InstanceID, "HPM-2");
    EXPECT_EQ(identities[0].VersionString, "2.17");
}

TEST(IpmiIdentitiesTest, ComponentWithoutDescriptionIsNamedByItsNumber) {
    const auto identities = ComponentIdentities({{2, "", "2.17", {}}});
    ASSERT_THAT(identities, SizeIs(1));
    EXPECT_EQ(identities[0].Name, "Component 2");
    EXPECT_EQ(identities[0].SoftwareID, "HPM-2");
    EXPECT_EQ(identities[0].Description, "Firmware component 2");
}

TEST(IpmiIdentitiesTest, FruWithVersionIsListedWithItsPlace) {
    const auto identities = FruIdentities({}, {APowerSupply()});
    ASSERT_THAT(identities, SizeIs(1));
    EXPECT_EQ(identities[0].Name, "PSU1");
    EXPECT_EQ(identities[0].SoftwareID, "EX-PSU-2000");
    EXPECT_EQ(identities[0].VersionString, "2.05");
    EXPECT_EQ(identities[0].SerialNumber, "EXPS0001");
    EXPECT_EQ(identities[0].AssociatedAdapterSlot, "2");
    EXPECT_EQ(identities[0].SlotType, 2);
    EXPECT_EQ(identities[0].InstanceID, "FRU1");
}

TEST(IpmiIdentitiesTest, FruWithoutVersionIsLeftOut) {
    FruDevice device = APowerSupply();
    device.data.product_version.clear();
    EXPECT_THAT(FruIdentities({}, {device}), IsEmpty());
}

TEST(IpmiIdentitiesTest, MachinesOwnFruComesFirst) {
    transport::FruData main;
    main.product_name = "DenseBox 9";
    main.product_version = "1.02";
    const auto identities = FruIdentities(main, {APowerSupply()});
    ASSERT_THAT(identities, SizeIs(2));
    EXPECT_EQ(identities[0].Name, "DenseBox 9");
    EXPECT_EQ(identities[0].SlotType, 0);
}

TEST(IsPowerSupplyTest, EntityRecordOrNameTells) {
    FruDevice device;
    EXPECT_FALSE(IsPowerSupply(device));
    device.locator.name = "Riser PSB";
    EXPECT_FALSE(IsPowerSupply(device));
    device.locator.name = "PSU2";
    EXPECT_TRUE(IsPowerSupply(device));
    device.locator.name = "Unit 4";
    device.data.is_power_supply = true;
    EXPECT_TRUE(IsPowerSupply(device));
    device.data.is_power_supply = false;
    device.data.product_name = "2000W Power Supply";
    EXPECT_TRUE(IsPowerSupply(device));
    device.data.product_name.clear();
    device.locator.entity_id = transport::kEntityPowerSupply;
    EXPECT_TRUE(IsPowerSupply(device));
}

}  // namespace
}  // namespace Vantix::ipmi
