#include "platform/disk/scsi_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/platform/disk/page_builder.h"

namespace Vantix::disk {
namespace {

using disk_test::AtaPage;
using disk_test::InquiryBytes;
using disk_test::Name;
using disk_test::Page;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ScsiPagesTest, InquiryGivesTypeAndTrimmedTexts) {
    const auto data = ReadInquiry(InquiryBytes('\0', "EXAMPLE", "DISK01", "DF01"));
    ASSERT_TRUE(data.has_value());
    EXPECT_EQ(data->device_type, 0);
    EXPECT_EQ(data->vendor, "EXAMPLE");
    EXPECT_EQ(data->model, "DISK01");
    EXPECT_EQ(data->revision, "DF01");
}

TEST(ScsiPagesTest, InquiryTypeIsReadWithoutItsQualifier) {
    EXPECT_EQ(ReadInquiry(InquiryBytes('\x6d', "V", "M", "R"))->device_type, 13);
}

TEST(ScsiPagesTest, InquiryCutBeforeTheRevisionIsNothing) {
    const std::string bytes = InquiryBytes('\0', "EXAMPLE", "DISK01", "DF01");
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        EXPECT_FALSE(ReadInquiry(bytes.substr(0, length)).has_value()) << length;
    }
}

TEST(ScsiPagesTest, SerialNumberIsTrimmedAtBothEnds) {
    EXPECT_EQ(ReadSerialPage(Page(0x80, "   DSER01  ")), "DSER01");
}

TEST(ScsiPagesTest, BytesBehindTheSerialNumberAreNotPartOfIt) {
    EXPECT_EQ(ReadSerialPage(Page(0x80, "DSER01") + "rubbish"), "DSER01");
}

TEST(ScsiPagesTest, HalfASerialNumberIsNone) {
    const std::string page = Page(0x80, "DSER01");
    for (std::size_t length = 0; length < page.size(); ++length) {
        EXPECT_EQ(ReadSerialPage(page.substr(0, length)), "") << length;
    }
}

TEST(ScsiPagesTest, SerialNumberOfAnotherPageIsNone) {
    EXPECT_EQ(ReadSerialPage(Page(0x83, "DSER01")), "");
}

TEST(ScsiPagesTest, NamesOfTheUnitAreFoundAmongOthers) {
    const std::string of_port = Name(0x13, "\x60target");
    const UnitNames names = ReadNamesPage(
        Page(0x83, of_port + Name(0x01, "EXAMPLE DISK01  DSER01") + Name(0x03, "\x50unit567")));
    EXPECT_THAT(names.naa_formats, ElementsAre(5));
    EXPECT_EQ(names.t10_name, "EXAMPLE DISK01  DSER01");
}

TEST(ScsiPagesTest, NameThatIsCutOffIsLeftOut) {
    const std::string page = Page(0x83, Name(0x03, "\x50unit567") + Name(0x03, "\x60unit567"));
    EXPECT_THAT(ReadNamesPage(page.substr(0, page.size() - 1)).naa_formats, ElementsAre(5));
    EXPECT_THAT(ReadNamesPage(page.substr(0, 6)).naa_formats, IsEmpty());
    EXPECT_THAT(ReadNamesPage("").naa_formats, IsEmpty());
}

TEST(ScsiPagesTest, EmptyNamesEndTheReadingOfNothing) {
    EXPECT_THAT(ReadNamesPage(Page(0x83, Name(0x03, "") + Name(0x03, "\x50x"))).naa_formats,
                ElementsAre(5));
}

TEST(ScsiPagesTest, AtaDriveTellsWholeTexts) {
    const auto texts = ReadAtaPage(AtaPage("EXAMPLE SSD 960GB LONG NAME", "EX01CB6Q", "ASER0001"));
    ASSERT_TRUE(texts.has_value());
    EXPECT_EQ(texts->model, "EXAMPLE SSD 960GB LONG NAME");
    EXPECT_EQ(texts->firmware, "EX01CB6Q");
    EXPECT_EQ(texts->serial, "ASER0001");
}

TEST(ScsiPagesTest, AtaPageCutBeforeTheEndOfTheModelIsNothing) {
    const std::string page = AtaPage("EXAMPLE SSD", "EX01CB6Q", "ASER0001");
    for (std::size_t length = 0; length < 154; ++length) {
        EXPECT_FALSE(ReadAtaPage(page.substr(0, length)).has_value()) << length;
    }
    EXPECT_TRUE(ReadAtaPage(page.substr(0, 154)).has_value());
}

TEST(ScsiPagesTest, AtaPageOfAPacketDeviceOrWithoutTextsIsNothing) {
    std::string packet = AtaPage("EXAMPLE DVD", "EX01", "ASER0001");
    packet[56] = '\xa1';
    EXPECT_FALSE(ReadAtaPage(packet).has_value());
    EXPECT_FALSE(ReadAtaPage(AtaPage("", "", "ASER0001")).has_value());
}

TEST(ScsiPagesTest, ControlBytesAndBrokenTextBecomeHarmless) {
    EXPECT_EQ(ReadSerialPage(Page(0x80,
                                  "A\x01\xff"
                                  "B")),
              "A \xEF\xBF\xBD"
              "B");
}

}  // namespace
}  // namespace Vantix::disk
