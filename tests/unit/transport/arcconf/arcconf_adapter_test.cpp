#include <gtest/gtest.h>

#include "support/arcconf_text.h"
#include "transport/arcconf/arcconf_output.h"

namespace Vantix::transport {
namespace {

using namespace test_support::arcconf;  // NOLINT: the tests write its words

TEST(ArcconfAdapterTest, AddressFirmwareAndModelAreRead) {
    const ArcconfAdapter adapter = ParseArcconfAdapter(Adapter("0:d9:0:0", "1.32[0]"));
    EXPECT_EQ(adapter.pci_address, "0000:d9:00.0");
    EXPECT_EQ(adapter.firmware_version, "1.32[0]");
    EXPECT_EQ(adapter.model, "Fake RAID 4711");
}

TEST(ArcconfAdapterTest, FirmwareOfABatteryIsNotTheControllers) {
    const std::string text = Banner(1) + Title("Controller information") +
                             Subtitle("Battery Information") + Pair("Firmware", "3.3") +
                             Subtitle("Controller Version Information") + Pair("Firmware", "7.5");
    EXPECT_EQ(ParseArcconfAdapter(text).firmware_version, "7.5");
}

TEST(ArcconfAdapterTest, FirmwareOfADiskIsNotTheControllers) {
    const std::string text = Devices(Disk(0, "FAKE", "Disk", "D1", "S1", "Slot 1"));
    EXPECT_EQ(ParseArcconfAdapter(text).firmware_version, "");
}

TEST(ArcconfAdapterTest, ColumnOfTheColonDoesNotMatter) {
    const std::string text = Banner(1) + Title("Controller information") +
                             "   PCI Address (Bus:Device:Function) : 5e:0:1\n" +
                             Subtitle("Controller Version Information") + "   Firmware : 7.5\n";
    EXPECT_EQ(ParseArcconfAdapter(text).pci_address, "0000:5e:00.1");
    EXPECT_EQ(ParseArcconfAdapter(text).firmware_version, "7.5");
}

TEST(ArcconfAdapterTest, WordsForUnknownAreNoValue) {
    const ArcconfAdapter adapter = ParseArcconfAdapter(Adapter("Not Available", "Unknown"));
    EXPECT_EQ(adapter.pci_address, "");
    EXPECT_EQ(adapter.firmware_version, "");
}

TEST(ArcconfAdapterTest, ControlBytesAndBadUtf8DoNotComeThrough) {
    const ArcconfAdapter adapter = ParseArcconfAdapter(Adapter("0:d9:0:0", "1\x01.3\xFF"));
    EXPECT_EQ(adapter.firmware_version, "1 .3\xEF\xBF\xBD");
}

struct AddressCase {
    const char* told;
    const char* text;
};

class PciAddressTextTest : public testing::TestWithParam<AddressCase> {};

TEST_P(PciAddressTextTest, IsWrittenAsTheKernelDoes) {
    EXPECT_EQ(PciAddressText(GetParam().told), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Addresses, PciAddressTextTest,
                         testing::Values(AddressCase{"0:d9:0:0", "0000:d9:00.0"},
                                         AddressCase{"d9:0:0", "0000:d9:00.0"},
                                         AddressCase{"0000:D9:1f.7", "0000:d9:1f.7"},
                                         AddressCase{"10000:1:0:0", "10000:01:00.0"},
                                         AddressCase{"", ""}, AddressCase{"0:0", ""},
                                         AddressCase{"0:100:0:0", ""}, AddressCase{"0:1:20:0", ""},
                                         AddressCase{"0:1:0:8", ""}, AddressCase{"0:1:0:0:0", ""},
                                         AddressCase{"0::0:0", ""}, AddressCase{"0:1:0:", ""},
                                         AddressCase{"-1:1:0:0", ""}, AddressCase{"0:x:0:0", ""},
                                         AddressCase{"ffffffffffffffffff:0:0:0", ""}));

}  // namespace
}  // namespace Vantix::transport
