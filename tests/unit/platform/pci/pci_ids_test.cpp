#include "platform/pci/pci_ids.h"

#include <gtest/gtest.h>

namespace Vantix::pci {
namespace {

std::vector<std::string> IdsOfAnAdapter() {
    return {R"(PCI\VEN_8086&DEV_1572&SUBSYS_00018087&REV_02)",
            R"(PCI\VEN_8086&DEV_1572&SUBSYS_00018087)", R"(PCI\VEN_8086&DEV_1572&CC_020000)",
            R"(PCI\VEN_8086&DEV_1572&CC_0200)"};
}

TEST(PciIdsTest, TextsHaveFourDigitsANumber) {
    PciIds ids;
    ids.vendor = 0x8086;
    ids.device = 0xA;
    ids.subsystem_device = 0x1D0F;
    ids.class_code = 0x10400;
    EXPECT_EQ(DeviceIdText(ids), "8086000a");
    EXPECT_EQ(SubsystemIdText(ids), "00001d0f");
    EXPECT_EQ(ClassCodeText(ids), "010400");
}

TEST(PciIdsTest, UnknownClassHasNoText) {
    PciIds ids;
    ids.class_code = kNoClass;
    EXPECT_EQ(ClassCodeText(ids), "");
}

TEST(PciHardwareIdsTest, VendorDeviceSubsystemAndClassAreRead) {
    const auto ids = ParsePciHardwareIds(IdsOfAnAdapter());
    ASSERT_TRUE(ids);
    EXPECT_EQ(DeviceIdText(*ids), "80861572");
    EXPECT_EQ(ids->subsystem_vendor, 0x8087U);
    EXPECT_EQ(ids->subsystem_device, 0x0001U);
    EXPECT_EQ(ClassCodeText(*ids), "020000");
}

TEST(PciHardwareIdsTest, ClassOfCompatibleIdsCounts) {
    const auto ids = ParsePciHardwareIds(
        {R"(PCI\VEN_1D0F&DEV_1001)", R"(PCI\VEN_1D0F&CC_010802)", R"(PCI\CC_0108)"});
    ASSERT_TRUE(ids);
    EXPECT_EQ(ids->class_code, 0x010802U);
}

TEST(PciHardwareIdsTest, ClassWithoutProgrammingInterfaceIsEnough) {
    const auto ids = ParsePciHardwareIds({R"(PCI\VEN_1D0F&DEV_1001&CC_0604)"});
    ASSERT_TRUE(ids);
    EXPECT_EQ(ids->class_code, 0x060400U);
}

TEST(PciHardwareIdsTest, MissingClassAndSubsystemAreUnknown) {
    const auto ids = ParsePciHardwareIds({R"(PCI\VEN_1D0F&DEV_1001)"});
    ASSERT_TRUE(ids);
    EXPECT_EQ(ids->class_code, kNoClass);
    EXPECT_EQ(SubsystemIdText(*ids), "00000000");
}

TEST(PciHardwareIdsTest, LetterCaseDoesNotMatter) {
    const auto ids = ParsePciHardwareIds({R"(pci\ven_1d0f&Dev_ABcd)"});
    ASSERT_TRUE(ids);
    EXPECT_EQ(DeviceIdText(*ids), "1d0fabcd");
}

class NoPciHardwareIdTest : public testing::TestWithParam<const char*> {};

TEST_P(NoPciHardwareIdTest, TellsNothing) {
    EXPECT_FALSE(ParsePciHardwareIds({GetParam()}));
}

INSTANTIATE_TEST_SUITE_P(Ids, NoPciHardwareIdTest,
                         testing::Values("", "PCI", R"(PCI\)", R"(PCI\&&&)", R"(PCI\CC_0604)",
                                         R"(PCI\VEN_1D0F)", R"(PCI\DEV_1001)",
                                         R"(PCI\VEN_1D0&DEV_1001)", R"(PCI\VEN_1D0FF&DEV_1001)",
                                         R"(PCI\VEN_1D0F&DEV_10G1)", R"(PCI\VEN_-D0F&DEV_1001)",
                                         R"(PCI\VEN_FFFF&DEV_FFFF)", R"(USB\VEN_1D0F&DEV_1001)",
                                         R"(HDAUDIO\FUNC_01&VEN_10EC&DEV_0256)",
                                         R"(VEN_1D0F&DEV_1001)"));

TEST(PciHardwareIdsTest, EmptyListTellsNothing) {
    EXPECT_FALSE(ParsePciHardwareIds({}));
}

}  // namespace
}  // namespace Vantix::pci
