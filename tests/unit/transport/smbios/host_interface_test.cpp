#include "transport/smbios/host_interface.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/smbios_builder.h"

namespace {

using test_support::AnSmbiosStructure;
using test_support::AnSmbiosTable;
using test_support::HostInterfaceFields;
using Vantix::transport::IpAddressText;
using Vantix::transport::ReadRedfishHostInterfaces;
using Vantix::transport::ReadSmbiosTable;
using Vantix::transport::RedfishHostInterface;

const std::string kLoopback("\x7f\0\0\x01", 4);

std::vector<RedfishHostInterface> InterfacesOf(const AnSmbiosTable& table) {
    return ReadRedfishHostInterfaces(ReadSmbiosTable(table.Bytes()));
}

HostInterfaceFields Fields() {
    HostInterfaceFields fields;
    fields.service_address = kLoopback;
    fields.service_port = 8443;
    return fields;
}

TEST(RedfishHostInterfaceTest, RecordTellsAddressesPortAndName) {
    HostInterfaceFields fields = Fields();
    fields.host_address = std::string("\x7f\0\0\x02", 4);
    fields.host_name = "bmc.example.invalid";
    const auto found = InterfacesOf(AnSmbiosTable().HostInterface(fields));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].service_address, "127.0.0.1");
    EXPECT_EQ(found[0].host_address, "127.0.0.2");
    EXPECT_EQ(found[0].service_port, 8443);
    EXPECT_EQ(found[0].service_host_name, "bmc.example.invalid");
    EXPECT_EQ(found[0].device_type, 2);
}

TEST(RedfishHostInterfaceTest, Ipv6AddressIsRead) {
    HostInterfaceFields fields = Fields();
    fields.service_address = std::string(15, '\0') + "\x01";
    const auto found = InterfacesOf(AnSmbiosTable().HostInterface(fields));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].service_address, "::1");
}

TEST(RedfishHostInterfaceTest, UnspecifiedAddressAndUnknownFormatAreEmpty) {
    HostInterfaceFields fields = Fields();
    fields.service_address = std::string(4, '\0');
    const auto found = InterfacesOf(AnSmbiosTable().HostInterface(fields).HostInterface({}));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].service_address, "");
    EXPECT_EQ(found[1].service_address, "");
}

TEST(RedfishHostInterfaceTest, NewerDevicesTellTheirMacAddress) {
    HostInterfaceFields usb = Fields();
    usb.device = std::string("\x04\x0d\x34\x12\x78\x56\0\x02\0\0\0\x0a\xff", 13);
    HostInterfaceFields pci = Fields();
    pci.device = std::string("\x05\x14\x34\x12\x78\x56\x34\x12\x78\x56\x02\0\0\0\0\x02", 16);
    const auto found = InterfacesOf(AnSmbiosTable().HostInterface(usb).HostInterface(pci));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].mac_address, "02:00:00:00:0a:ff");
    EXPECT_EQ(found[1].mac_address, "02:00:00:00:00:02");
}

TEST(RedfishHostInterfaceTest, DeviceTooShortForItsMacAddressHasNone) {
    HostInterfaceFields fields = Fields();
    fields.device = std::string("\x04\x03\x34", 3);
    const auto found = InterfacesOf(AnSmbiosTable().HostInterface(fields));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].mac_address, "");
    EXPECT_EQ(found[0].service_address, "127.0.0.1");
}

TEST(RedfishHostInterfaceTest, OtherInterfacesAndStructuresArePassedOver) {
    AnSmbiosStructure kcs(42, 12);
    kcs.Byte(4, 2);
    EXPECT_TRUE(InterfacesOf(AnSmbiosTable().System({"Maker"}).Add(kcs)).empty());
}

TEST(RedfishHostInterfaceTest, RecordsOfOtherProtocolsArePassedOver) {
    AnSmbiosStructure structure(42, 14);
    structure.Byte(4, 0x40).Byte(5, 1).Byte(6, 2).Byte(7, 2);
    structure.Byte(8, 2).Byte(9, 1).Byte(10, 0xff);  // IPMI, one byte
    structure.Byte(11, 4).Byte(12, 1);               // Redfish over IP, far too short
    const auto found = InterfacesOf(AnSmbiosTable().Add(structure));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].service_address, "");
    EXPECT_EQ(found[0].service_port, 0);
}

TEST(RedfishHostInterfaceTest, LengthsBeyondTheStructureAreHarmless) {
    for (int byte : {5, 7, 9}) {
        AnSmbiosStructure structure(42, 12);
        structure.Byte(4, 0x40).Byte(5, 1).Byte(7, 1).Byte(8, 4).Byte(byte, 255);
        for (const auto& found : InterfacesOf(AnSmbiosTable().Add(structure))) {
            EXPECT_EQ(found.service_address, "");
            EXPECT_EQ(found.service_host_name, "");
        }
    }
}

TEST(RedfishHostInterfaceTest, NameLongerThanItsRecordIsNotTold) {
    std::string table = AnSmbiosTable().HostInterface(Fields()).Bytes();
    table.at(6 + 5 + 3 + 0x5a) = 20;
    const auto found = ReadRedfishHostInterfaces(ReadSmbiosTable(table));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].service_host_name, "");
    EXPECT_EQ(found[0].service_port, 8443);
}

TEST(IpAddressTextTest, Ipv6IsWrittenInItsShortForm) {
    const std::string zero(1, '\0');
    const auto text = [](std::initializer_list<int> groups) {
        std::string bytes;
        for (int group : groups) {
            bytes += static_cast<char>(group >> 8);
            bytes += static_cast<char>(group & 0xff);
        }
        return IpAddressText(bytes);
    };
    EXPECT_EQ(text({0x2001, 0xdb8, 0, 0, 1, 0, 0, 1}), "2001:db8::1:0:0:1");
    EXPECT_EQ(text({0x2001, 0xdb8, 0, 1, 1, 1, 1, 1}), "2001:db8:0:1:1:1:1:1");
    EXPECT_EQ(text({0xfe80, 0, 0, 0, 0, 0, 0, 0x10}), "fe80::10");
    EXPECT_EQ(text({0xfd00, 0, 0, 0, 0, 0, 0, 0}), "fd00::");
    EXPECT_EQ(text({1, 2, 3, 4, 5, 6, 7, 0xabcd}), "1:2:3:4:5:6:7:abcd");
}

TEST(IpAddressTextTest, OtherLengthsAreNoAddress) {
    EXPECT_EQ(IpAddressText(""), "");
    EXPECT_EQ(IpAddressText("abc"), "");
    EXPECT_EQ(IpAddressText("abcdef"), "");
    EXPECT_EQ(IpAddressText("\xc0\x01\x02\xff"), "192.1.2.255");
}

}  // namespace
