// Answers that are damaged, endless or something else: no crash, clean and short texts.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/arcconf_text.h"
#include "transport/arcconf/arcconf_output.h"

namespace Vantix::transport {
namespace {

using namespace test_support::arcconf;  // NOLINT: the tests write its words

std::string WholeAnswer() {
    return Adapter("0:d9:0:0", "1.32[0]") +
           Devices(Disk(1, "FAKE", "FK", "F1", "S1", "Slot 1") + Enclosure(2));
}

bool IsCleanAndShort(const std::string& text) {
    return text.size() <= 800 &&
           std::none_of(text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20; });
}

TEST(ArcconfDamageTest, EveryCutOffAnswerIsRead) {
    const std::string whole = WholeAnswer();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::string cut = whole.substr(0, length);
        EXPECT_LE(ParseArcconfDisks(cut).disks.size(), 1U);
        EXPECT_TRUE(IsCleanAndShort(ParseArcconfAdapter(cut).firmware_version));
        EXPECT_LE(ParseArcconfControllers(cut).controllers.size(), 1U);
    }
}

TEST(ArcconfDamageTest, EveryBrokenByteIsSurvived) {
    const std::string whole = WholeAnswer();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string broken = whole;
        broken[at] = '\xFF';
        for (const ArcconfDisk& disk : ParseArcconfDisks(broken).disks) {
            EXPECT_TRUE(IsCleanAndShort(disk.model));
        }
    }
}

TEST(ArcconfDamageTest, LongValueIsCut) {
    const ArcconfDisks answer = ParseArcconfDisks(
        Devices(Disk(1, "FAKE", std::string(1'000'000, 'M'), "F", "S", "Slot 1")));
    ASSERT_EQ(answer.disks.size(), 1U);
    EXPECT_TRUE(IsCleanAndShort(answer.disks[0].model));
}

TEST(ArcconfDamageTest, EndlessDeviceListIsCut) {
    std::string devices;
    for (int i = 0; i < 6000; ++i) devices += "Device #1\nModel : M\n";
    EXPECT_EQ(ParseArcconfDisks(Devices(devices)).disks.size(), 4096U);
}

TEST(ArcconfDamageTest, BinaryRubbishIsNoAnswer) {
    std::string rubbish;
    for (int i = 0; i < 4096; ++i) rubbish.push_back(static_cast<char>(i * 37));
    EXPECT_EQ(ParseArcconfControllers(rubbish).found, std::nullopt);
    EXPECT_FALSE(ParseArcconfDisks(rubbish).has_section);
    EXPECT_EQ(ParseArcconfAdapter(rubbish).pci_address, "");
    EXPECT_EQ(ParseArcconfRelease(rubbish), "");
}

TEST(ArcconfDamageTest, ValueWithoutDeviceBelongsToNobody) {
    EXPECT_TRUE(ParseArcconfDisks(Devices(Pair("Model", "lonely", 9))).disks.empty());
}

}  // namespace
}  // namespace Vantix::transport
