#include "platform/ipmi/ipmi_facts.h"

#include <gtest/gtest.h>

#include "platform/redfish/bmc_kind.h"

namespace Vantix::ipmi {
namespace {

using transport::DeviceId;
using transport::FruData;

FruData WholeFru() {
    FruData fru;
    fru.product_name = "DenseBox 9";
    fru.product_part_number = "EX-9";
    fru.board_name = "EX-BOARD";
    fru.board_part_number = "EX-BP";
    fru.chassis_part_number = "EX-CH";
    fru.product_serial_number = "EXPR0001";
    fru.chassis_serial_number = "EXCH0001";
    fru.board_serial_number = "EXBD0001";
    return fru;
}

TEST(IpmiMachineTypeTest, ProductNameComesFirst) {
    EXPECT_EQ(MachineTypeOf(WholeFru()), "DenseBox 9");
}

TEST(IpmiMachineTypeTest, PartNumberBoardAndChassisFollow) {
    FruData fru = WholeFru();
    fru.product_name.clear();
    EXPECT_EQ(MachineTypeOf(fru), "EX-9");
    fru.product_part_number.clear();
    EXPECT_EQ(MachineTypeOf(fru), "EX-BOARD");
    fru.board_name.clear();
    EXPECT_EQ(MachineTypeOf(fru), "EX-BP");
    fru.board_part_number.clear();
    EXPECT_EQ(MachineTypeOf(fru), "EX-CH");
}

TEST(IpmiMachineTypeTest, FillInsOfMakersCountAsMissing) {
    FruData fru = WholeFru();
    fru.product_name = "To be filled by O.E.M.";
    EXPECT_EQ(MachineTypeOf(fru), "EX-9");
}

TEST(IpmiMachineTypeTest, EmptyFruTellsNothing) {
    EXPECT_EQ(MachineTypeOf({}), "");
    EXPECT_EQ(SerialNumberOf({}), "");
}

TEST(IpmiSerialNumberTest, ProductThenChassisThenBoard) {
    FruData fru = WholeFru();
    EXPECT_EQ(SerialNumberOf(fru), "EXPR0001");
    fru.product_serial_number.clear();
    EXPECT_EQ(SerialNumberOf(fru), "EXCH0001");
    fru.chassis_serial_number.clear();
    EXPECT_EQ(SerialNumberOf(fru), "EXBD0001");
}

TEST(IpmiBmcKindTest, MakersNumberDecides) {
    DeviceId device;
    device.manufacturer = 20974;
    EXPECT_EQ(BmcKindOf(device, {}), redfish::kBmcKindAmi);
    device.manufacturer = 674;
    EXPECT_EQ(BmcKindOf(device, {}), redfish::kBmcKindIdrac);
}

TEST(IpmiBmcKindTest, NameOfTheMachineDecidesForOtherMakers) {
    DeviceId device;
    device.manufacturer = 0xfffe;
    FruData fru;
    fru.board_name = "Vesk Module";
    EXPECT_EQ(BmcKindOf(device, fru), redfish::kBmcKindVesk);
}

TEST(IpmiBmcKindTest, UnknownControllerIsStillABmc) {
    EXPECT_EQ(BmcKindOf({}, {}), redfish::kBmcKindOther);
}

TEST(IpmiManufacturerTest, NameOfTheFruElseTheNumber) {
    DeviceId device;
    device.manufacturer = 7154;
    FruData fru;
    EXPECT_EQ(ManufacturerOf(device, fru), "Enterprise number 7154");
    fru.board_manufacturer = "Example";
    EXPECT_EQ(ManufacturerOf(device, fru), "Example");
}

TEST(IpmiManufacturerTest, UnknownNumbersTellNothing) {
    DeviceId device;
    EXPECT_EQ(ManufacturerOf(device, {}), "");
    device.manufacturer = 0xfffff;
    EXPECT_EQ(ManufacturerOf(device, {}), "");
}

}  // namespace
}  // namespace Vantix::ipmi
