#include "transport/ipmi/fru_data.h"

#include <gtest/gtest.h>

#include "support/fru_builder.h"

namespace Vantix::transport {
namespace {

using test_support::AFru;

AFru WholeFru() {
    return AFru()
        .Chassis({"EX-CH", "EXCH0001"})
        .Board({"Example", "EX-BOARD", "EXBD0001", "EX-BP"})
        .Product({"Example", "DenseBox 9", "EX-9", "1.02", "EX 0001"});
}

TEST(FruDataTest, AllAreasOfAWholeDeviceAreRead) {
    const FruData data = ReadFruData(WholeFru().Image());
    EXPECT_EQ(data.chassis_part_number, "EX-CH");
    EXPECT_EQ(data.chassis_serial_number, "EXCH0001");
    EXPECT_EQ(data.board_name, "EX-BOARD");
    EXPECT_EQ(data.board_part_number, "EX-BP");
    EXPECT_EQ(data.product_manufacturer, "Example");
    EXPECT_EQ(data.product_name, "DenseBox 9");
    EXPECT_EQ(data.product_part_number, "EX-9");
    EXPECT_EQ(data.product_version, "1.02");
    EXPECT_EQ(data.product_serial_number, "EX 0001");
    EXPECT_FALSE(data.has_bad_checksum);
    EXPECT_FALSE(data.is_power_supply);
}

TEST(FruDataTest, MissingAreasStayEmpty) {
    const FruData data = ReadFruData(AFru().Board({"Example", "EX-BOARD"}).Image());
    EXPECT_EQ(data.board_name, "EX-BOARD");
    EXPECT_EQ(data.board_serial_number, "");
    EXPECT_EQ(data.product_name, "");
    EXPECT_EQ(data.chassis_part_number, "");
}

TEST(FruDataTest, DamagedAreaCostsOnlyItself) {
    Bytes image = WholeFru().Image();
    image[static_cast<std::size_t>(image[3]) * 8] = 0x77;  // the board area's format version
    const FruData data = ReadFruData(image);
    EXPECT_EQ(data.board_name, "");
    EXPECT_EQ(data.product_name, "DenseBox 9");
}

TEST(FruDataTest, WrongChecksumIsToldAndTheTextsAreTaken) {
    Bytes image = WholeFru().Image();
    ++image.back();
    const FruData data = ReadFruData(image);
    EXPECT_TRUE(data.has_bad_checksum);
    EXPECT_EQ(data.product_name, "DenseBox 9");
}

TEST(FruDataTest, DeviceWithoutValidHeaderIsEmpty) {
    Bytes image = WholeFru().Image();
    ++image[7];
    EXPECT_TRUE(ReadFruData(image).IsEmpty());
    EXPECT_TRUE(ReadFruData(Bytes(256, 0xff)).IsEmpty());
    EXPECT_TRUE(ReadFruData(Bytes(256, 0x00)).IsEmpty());
    EXPECT_TRUE(ReadFruData({}).IsEmpty());
}

TEST(FruDataTest, AreaThatPointsBehindTheDeviceIsLeftOut) {
    const Bytes image = {1, 0, 0xf0, 0, 0, 0, 0, 0x0f};
    EXPECT_TRUE(ReadFruData(image).IsEmpty());
}

TEST(FruDataTest, FieldsOfACutAreaAreReadAsFarAsTheyReach) {
    Bytes image = AFru().Product({"Example", "DenseBox 9", "EX-9", "1.02"}).Image();
    image.resize(8 + 3 + 8 + 11);  // behind the name
    const FruData data = ReadFruData(image);
    EXPECT_EQ(data.product_name, "DenseBox 9");
    EXPECT_EQ(data.product_part_number, "");
}

TEST(FruDataTest, PowerSupplyRecordMarksAPowerSupply) {
    const Bytes image = AFru().Product({"Example", "EX-PSU"}).PowerSupplyRecord().Image();
    EXPECT_TRUE(ReadFruData(image).is_power_supply);
}

TEST(FruDataTest, RecordWithABadHeaderIsNotBelieved) {
    Bytes image = AFru().Product({"Example", "EX-PSU"}).PowerSupplyRecord().Image();
    ++image[static_cast<std::size_t>(image[5]) * 8 + 4];
    EXPECT_FALSE(ReadFruData(image).is_power_supply);
}

TEST(FruDataTest, LanguageOfTheAreaDecidesTheCoding) {
    const Bytes image = AFru().ProductFields({0xc2, 'A', 0, 0xc2, 'B', 0}, 8).Image();
    EXPECT_EQ(ReadFruData(image).product_manufacturer, "A");
    EXPECT_EQ(ReadFruData(image).product_name, "B");
}

TEST(FruDataTest, EveryCutOfAnImageIsReadWithoutHarm) {
    const Bytes image = WholeFru().PowerSupplyRecord().Image();
    for (std::size_t size = 0; size < image.size(); ++size) {
        const Bytes part(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_LE(ReadFruData(part).product_name.size(), 10U);
        EXPECT_GE(FruBytesNeeded(part), 8U);
    }
}

TEST(FruBytesNeededTest, HeaderAloneTellsWhereTheAreasStart) {
    const Bytes image = WholeFru().Image();
    const Bytes header(image.begin(), image.begin() + 8);
    EXPECT_EQ(FruBytesNeeded(header), image[4] * 8U + 8U);
}

TEST(FruBytesNeededTest, AreasTellTheirLengths) {
    const Bytes image = WholeFru().Image();
    EXPECT_EQ(FruBytesNeeded(image), image.size());
}

TEST(FruBytesNeededTest, BlankDeviceNeedsNoMore) {
    EXPECT_EQ(FruBytesNeeded(Bytes(64, 0xff)), 8U);
}

}  // namespace
}  // namespace Vantix::transport
