#include "platform/disk/storage_queries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/disk/nvme_identity.h"
#include "unit/platform/disk/page_builder.h"
#include "unit/platform/disk/storage_answers.h"

namespace Vantix::disk {
namespace {

using disk_test::AdapterBytes;
using disk_test::ADevice;
using disk_test::Identifier;
using disk_test::IdentifyData;
using disk_test::LittleEndian;
using disk_test::NamesBytes;
using disk_test::ProtocolBytes;
using testing::ElementsAre;
using testing::IsEmpty;

ADevice ADiskDevice() {
    return {"EXAMPLE ", "EXD4000         ", "B003", "  DSER0001", 0x0a, 0};
}

TEST(StorageQueriesTest, NumberIsReadFromTheNameOfADiskOnly) {
    EXPECT_EQ(DiskNumberOf("PhysicalDrive0"), 0);
    EXPECT_EQ(DiskNumberOf("PhysicalDrive127"), 127);
    for (const char* name : {"PhysicalDrive", "PhysicalDrive1x", "PhysicalDrive-1", "C:", "",
                             "PhysicalDrive99999999999", "Harddisk0Partition1"}) {
        EXPECT_EQ(DiskNumberOf(name), std::nullopt) << name;
    }
}

TEST(StorageQueriesTest, QueriesNameTheirProperty) {
    EXPECT_EQ(DeviceQuery(), LittleEndian(0) + std::string(8, '\0'));
    EXPECT_EQ(AdapterQuery(), LittleEndian(1) + std::string(8, '\0'));
    EXPECT_EQ(NamesQuery(), LittleEndian(2) + std::string(8, '\0'));
}

TEST(StorageQueriesTest, IdentifyQueryHasRoomForItsAnswer) {
    const std::string query = IdentifyQuery();
    ASSERT_EQ(query.size(), 8U + 40U + 4096U);
    EXPECT_EQ(query.substr(0, 8), LittleEndian(49) + LittleEndian(0));
    // NVMe, Identify, of the controller; the data behind these forty bytes.
    EXPECT_EQ(query.substr(8, 24), LittleEndian(3) + LittleEndian(1) + LittleEndian(1) +
                                       LittleEndian(0) + LittleEndian(40) + LittleEndian(4096));
    EXPECT_EQ(query.find_first_not_of('\0', 32), std::string::npos);
}

TEST(StorageQueriesTest, DeviceTellsItsTextsAndBus) {
    const auto device = ReadStorageDevice(ADiskDevice().Bytes());
    ASSERT_TRUE(device);
    EXPECT_EQ(device->vendor, "EXAMPLE");
    EXPECT_EQ(device->model, "EXD4000");
    EXPECT_EQ(device->revision, "B003");
    EXPECT_EQ(device->serial, "DSER0001");
    EXPECT_EQ(static_cast<int>(device->bus), 0x0a);
    EXPECT_EQ(device->device_type, 0);
}

TEST(StorageQueriesTest, MissingTextsAreEmpty) {
    ADevice device = ADiskDevice();
    device.vendor = device.serial = "";
    std::string answer = device.Bytes();
    EXPECT_EQ(ReadStorageDevice(answer)->vendor, "");
    // No serial number has a second spelling.
    answer.replace(24, 4, LittleEndian(0xffffffff));
    EXPECT_EQ(ReadStorageDevice(answer)->serial, "");
    EXPECT_EQ(ReadStorageDevice(answer)->model, "EXD4000");
}

TEST(StorageQueriesTest, AnswerCutInsideATextLosesThatTextAlone) {
    std::string answer = ADiskDevice().Bytes();
    answer.resize(answer.size() - 3);
    const auto device = ReadStorageDevice(answer);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->serial, "");
    EXPECT_EQ(device->revision, "B003");
}

TEST(StorageQueriesTest, TextsInTheFixedPartOrBehindTheEndAreNone) {
    for (const std::uint32_t at : {1U, 8U, 35U, 4096U, 0x7fffffffU, 0x80000000U, 0xfffffffeU}) {
        std::string answer = ADiskDevice().Bytes();
        answer.replace(16, 4, LittleEndian(at));
        EXPECT_EQ(ReadStorageDevice(answer)->model, "") << at;
    }
}

TEST(StorageQueriesTest, DeviceCutInItsFixedPartIsNone) {
    const std::string answer = ADiskDevice().Bytes();
    for (std::size_t length = 0; length < 36; ++length) {
        EXPECT_FALSE(ReadStorageDevice(answer.substr(0, length))) << length;
    }
    EXPECT_TRUE(ReadStorageDevice(answer.substr(0, 36)));
}

TEST(StorageQueriesTest, ControlBytesInTextsBecomeBlanks) {
    ADevice device = ADiskDevice();
    device.model = "EX\x1b[31m\nD";
    EXPECT_EQ(ReadStorageDevice(device.Bytes())->model, "EX [31m D");
}

TEST(StorageQueriesTest, AdapterTellsItsBus) {
    EXPECT_EQ(ReadAdapterBus(AdapterBytes(0x09)), StorageBus::kIscsi);
    EXPECT_EQ(ReadAdapterBus(AdapterBytes(0x09).substr(0, 24)), StorageBus::kUnknown);
    EXPECT_EQ(ReadAdapterBus(""), StorageBus::kUnknown);
}

TEST(StorageQueriesTest, NaaNamesOfTheUnitAreFound) {
    const std::string names = Identifier(3, 0, "\x60\x01\x40\x50") +
                              Identifier(3, 1, "\x50\x01\x40\x50") +
                              Identifier(1, 0, "EXAMPLE EXD4000") + Identifier(3, 0, "\x50\x11");
    EXPECT_THAT(ReadNaaFormats(NamesBytes(4, names)), ElementsAre(6, 5));
}

TEST(StorageQueriesTest, NamesThatLeadNowhereEndTheReading) {
    std::string circle = Identifier(3, 0, "\x60\x01\x40\x50");
    circle.replace(10, 2, LittleEndian(0, 2));
    EXPECT_THAT(ReadNaaFormats(NamesBytes(0xffffffff, circle)), ElementsAre(6));
    std::string far = Identifier(3, 0, "\x60\x01\x40\x50");
    far.replace(10, 2, LittleEndian(0xffff, 2));
    EXPECT_THAT(ReadNaaFormats(NamesBytes(2, far)), ElementsAre(6));
}

TEST(StorageQueriesTest, NamesCutAnywhereAreReadWithoutHarm) {
    const std::string answer =
        NamesBytes(2, Identifier(3, 0, "\x60\x01") + Identifier(3, 0, "\x50\x01"));
    for (std::size_t length = 0; length <= answer.size(); ++length) {
        EXPECT_LE(ReadNaaFormats(answer.substr(0, length)).size(), 2U);
    }
    EXPECT_THAT(ReadNaaFormats(answer.substr(0, 28)), IsEmpty());
    EXPECT_THAT(ReadNaaFormats(answer.substr(0, 29)), ElementsAre(6));
}

TEST(StorageQueriesTest, IdentifyDataAreThoseOfTheController) {
    const std::string answer = ProtocolBytes(IdentifyData("NVSER0001", "Example NVMe", "2.0.1"));
    const auto identity = ReadIdentifyController(ReadIdentifyData(answer));
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->model, "Example NVMe");
    EXPECT_EQ(identity->firmware, "2.0.1");
    EXPECT_EQ(identity->serial, "NVSER0001");
}

TEST(StorageQueriesTest, IdentifyDataThatPointOutsideAreNone) {
    const std::string answer = ProtocolBytes(std::string(4096, 'x'));
    for (const std::uint32_t at : {0U, 39U, 4137U, 0x80000000U, 0xffffffffU}) {
        std::string hostile = answer;
        hostile.replace(24, 4, LittleEndian(at));
        EXPECT_EQ(ReadIdentifyData(hostile), "") << at;
    }
}

TEST(StorageQueriesTest, IdentifyDataAreNeverLongerThanTheAnswerOrThePage) {
    std::string answer = ProtocolBytes(std::string(100, 'x'));
    answer.replace(28, 4, LittleEndian(0xffffffff));
    EXPECT_EQ(ReadIdentifyData(answer).size(), 100U);
    EXPECT_EQ(ReadIdentifyData(ProtocolBytes(std::string(9000, 'x'))).size(), 4096U);
    for (std::size_t length = 0; length < 48; ++length) {
        EXPECT_EQ(ReadIdentifyData(answer.substr(0, length)), "");
    }
}

}  // namespace
}  // namespace Vantix::disk
