#include "platform/pci/pci_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using Vantix::pci::PciIds;
using Vantix::pci::PciNames;

constexpr const char* kIdFile =
    "# A comment\n"
    "\n"
    "1d0e  Other Maker\n"
    "\t1001  Other Device\n"
    "1d0f  Example Networks\n"
    "\t1000  EX700 Controller\n"
    "\t\t1d0f 2001  Not This One\n"
    "\t1001  EX710 Controller\n"
    "\t\t1d0f 2001  Dual Port Adapter\n"
    "\t\t1d0f 2002  Quad Port Adapter\n"
    "\t1002  EX720 Controller\n"
    "C 01  Mass storage controller\n"
    "\t00  SCSI storage controller\n"
    "C 02  Network controller\n"
    "\t00  Ethernet controller\n"
    "\t\t01  Interface\n";

constexpr PciIds kIds = {0x1d0f, 0x1001, 0x1d0f, 0x2001, 0x020000};

TEST(PciNamesTest, NamesOfTheWantedIdsAreRead) {
    const PciNames names(kIdFile, {kIds});
    EXPECT_EQ(names.Vendor(kIds), "Example Networks");
    EXPECT_EQ(names.Device(kIds), "EX710 Controller");
    EXPECT_EQ(names.Subsystem(kIds), "Dual Port Adapter");
    EXPECT_EQ(names.Class(kIds), "Ethernet controller");
}

TEST(PciNamesTest, IdsThatWereNotAskedForHaveNoName) {
    const PciIds other = {0x1d0f, 0x1002, 0x1d0f, 0x2002, 0x010000};
    const PciNames names(kIdFile, {kIds});
    EXPECT_EQ(names.Device(other), "");
    EXPECT_EQ(names.Subsystem(other), "");
}

TEST(PciNamesTest, UnknownIdsHaveNoNameButTheirBaseClass) {
    const PciIds unknown = {0x1d0f, 0x9999, 0x1d0f, 0x2001, 0x02ff00};
    const PciNames names(kIdFile, {unknown});
    EXPECT_EQ(names.Vendor(unknown), "Example Networks");
    EXPECT_EQ(names.Device(unknown), "");
    EXPECT_EQ(names.Subsystem(unknown), "");
    EXPECT_EQ(names.Class(unknown), "Network controller");
}

TEST(PciNamesTest, WithoutAFileBaseClassesAreKnown) {
    const PciNames names("", {kIds});
    EXPECT_EQ(names.Vendor(kIds), "");
    EXPECT_EQ(names.Device(kIds), "");
    EXPECT_EQ(names.Class(kIds), "Network controller");
    const PciIds odd = {1, 1, 1, 1, 0x770000};
    EXPECT_EQ(PciNames("", {odd}).Class(odd), "");
}

TEST(PciNamesTest, CarriageReturnsAndMissingLastLineEndAreHarmless) {
    const PciNames names("1d0f  Example Networks\r\n\t1001  EX710 Controller\r\n\t\t1d0f 2001  D\r",
                         {kIds});
    EXPECT_EQ(names.Vendor(kIds), "Example Networks");
    EXPECT_EQ(names.Device(kIds), "EX710 Controller");
    EXPECT_EQ(names.Subsystem(kIds), "D");
}

TEST(PciNamesTest, DamagedLinesArePassedOver) {
    const PciNames names(
        "zz\n\t\t\t\n\t1001  Lost\n1d0f  Example Networks\n\t10\n\tzzzz  No\n\t\t1d0f 2001  No\n"
        "\t1001  EX710 Controller\n\t\t1d0f\n\t\t1d0f 20\n\t\t1d0f 2001  Dual Port Adapter\nC\nC "
        "z\n"
        "C 0\n1d0fx  No\n",
        {kIds});
    EXPECT_EQ(names.Vendor(kIds), "Example Networks");
    EXPECT_EQ(names.Device(kIds), "EX710 Controller");
    EXPECT_EQ(names.Subsystem(kIds), "Dual Port Adapter");
}

TEST(PciNamesTest, FileInPiecesCutAnywhereGivesTheSameNames) {
    const std::string text =
        "1d0f  Example Networks\n\t1001  EX710 Controller\n\t\t1d0f 2001  Dual Port Adapter";
    for (std::size_t size = 1; size <= text.size(); ++size) {
        std::size_t at = 0;
        const auto next_piece = [&] {
            const std::string piece = text.substr(std::min(at, text.size()), size);
            at += piece.size();
            return piece;
        };
        const PciNames names(next_piece, {kIds});
        EXPECT_EQ(names.Vendor(kIds), "Example Networks") << size;
        EXPECT_EQ(names.Device(kIds), "EX710 Controller") << size;
        EXPECT_EQ(names.Subsystem(kIds), "Dual Port Adapter") << size;
    }
}

TEST(PciNamesTest, NamesAreCleaned) {
    const PciNames names("1d0f  Ex\xff\x01 Networks \n", {kIds});
    EXPECT_EQ(names.Vendor(kIds), "Ex\xEF\xBF\xBD  Networks");
}

TEST(PciNamesTest, BinaryContentGivesNoName) {
    std::string noise;
    for (int i = 0; i < 100000; ++i) noise += static_cast<char>(i * 7919 >> 3);
    EXPECT_EQ(PciNames(noise, {kIds}).Device(kIds), "");
}

}  // namespace
