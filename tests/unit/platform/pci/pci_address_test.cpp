#include "platform/pci/pci_address.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Vantix::pci::ParsePciAddress;
using Vantix::pci::PciAddress;

std::string Parsed(const std::string& text) {
    const auto address = ParsePciAddress(text);
    return address ? address->Text() : "none";
}

TEST(PciAddressTest, KernelsFormIsReadAndWritten) {
    EXPECT_EQ(Parsed("0000:3b:00.1"), "0000:3b:00.1");
    EXPECT_EQ(ParsePciAddress("0000:3b:1f.7"), (PciAddress{0, 0x3b, 0x1f, 7}));
}

TEST(PciAddressTest, DomainMayBeMissing) {
    EXPECT_EQ(Parsed("3b:00.1"), "0000:3b:00.1");
}

TEST(PciAddressTest, LetterCaseAndBlanksDoNotMatter) {
    EXPECT_EQ(Parsed(" 000A:3B:0C.1\n"), "000a:3b:0c.1");
}

TEST(PciAddressTest, ColonsOnlyAndShortNumbersAreRead) {
    EXPECT_EQ(Parsed("0:c2:0:0"), "0000:c2:00.0");
}

TEST(PciAddressTest, DomainsBeyondSixteenBitsAreKept) {
    EXPECT_EQ(Parsed("10000:e1:00.0"), "10000:e1:00.0");
    EXPECT_EQ(Parsed("ffffffff:e1:00.0"), "ffffffff:e1:00.0");
}

TEST(PciAddressTest, PartsAreWrittenWithoutFunctionAndDevice) {
    const PciAddress address{1, 0xe1, 2, 3};
    EXPECT_EQ(address.DeviceText(), "0001:e1:02");
    EXPECT_EQ(address.BusText(), "0001:e1");
}

TEST(PciAddressTest, OrderFollowsTheNumbersNotTheText) {
    EXPECT_LT(*ParsePciAddress("ffff:00:00.0"), *ParsePciAddress("10000:00:00.0"));
    EXPECT_LT(*ParsePciAddress("0000:09:00.0"), *ParsePciAddress("0000:0a:00.0"));
    EXPECT_LT(*ParsePciAddress("0000:0a:00.0"), *ParsePciAddress("0000:10:00.0"));
}

class PciAddressRefusalTest : public ::testing::TestWithParam<const char*> {};

TEST_P(PciAddressRefusalTest, TextIsNoAddress) {
    EXPECT_EQ(Parsed(GetParam()), "none");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PciAddressRefusalTest,
    ::testing::Values("", " ", ".", ":", "::.", "../..", "0000:00:00.0/../../x", "0000:3b:00",
                      "3b:00", "0:3b:0", "0000:3b:20.0", "0000:100:00.0", "0000:3b:00.8",
                      "0000:3b:00.10", "0000:3b:00.", "0000:3b:.0", ":3b:00.0", "0000::00.0",
                      "100000000:00:00.0", "0x0:3b:00.0", "-1:3b:00.0", "+0:3b:00.0", "0 0:3b:00.0",
                      "0000:3b:00.0:0", "0000:3b:00.0.0", "1:2:3:4:5", "gggg:3b:00.0"));

TEST(PciAddressTest, NulInTheMiddleIsNoAddress) {
    EXPECT_EQ(Parsed(std::string("0000:3b:00.0\0x", 14)), "none");
}

}  // namespace
