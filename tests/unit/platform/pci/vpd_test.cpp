#include "platform/pci/vpd.h"

#include <gtest/gtest.h>

#include <string>

#include "pci_tree.h"

namespace {

using test_support::AVpd;
using Vantix::pci::FirmwareVersionOf;
using Vantix::pci::ParseVpd;
using Vantix::pci::Vpd;

std::string Value(const Vpd& vpd, const std::string& keyword) {
    const auto field = vpd.read_only.find(keyword);
    return field == vpd.read_only.end() ? "none" : field->second;
}

std::string VersionFrom(const std::string& keyword, const std::string& value) {
    return FirmwareVersionOf(ParseVpd(AVpd().Field(keyword, value).Bytes()));
}

TEST(VpdTest, NameAndFieldsAreRead) {
    const Vpd vpd = ParseVpd(AVpd()
                                 .Identifier("EX710 Dual Port Adapter")
                                 .Field("PN", "EX-P1")
                                 .Field("EC", "A2")
                                 .Field("SN", "EXS0001")
                                 .Field("V0", "4.2.1")
                                 .Bytes());
    EXPECT_EQ(vpd.identifier, "EX710 Dual Port Adapter");
    EXPECT_EQ(Value(vpd, "PN"), "EX-P1");
    EXPECT_EQ(Value(vpd, "EC"), "A2");
    EXPECT_EQ(Value(vpd, "SN"), "EXS0001");
    EXPECT_EQ(Value(vpd, "V0"), "4.2.1");
    EXPECT_TRUE(vpd.has_checksum);
    EXPECT_TRUE(vpd.is_checksum_right);
    EXPECT_TRUE(vpd.is_finished);
}

TEST(VpdTest, WritableFieldsAreLeftOut) {
    const std::string writable = AVpd::Large('\x91', std::string("Y1\x03new", 6));
    const Vpd vpd = ParseVpd(writable + AVpd().Field("PN", "EX-P1").Bytes());
    EXPECT_EQ(Value(vpd, "Y1"), "none");
    EXPECT_EQ(Value(vpd, "PN"), "EX-P1");
}

TEST(VpdTest, SmallResourcesOfOtherKindsArePassedOver) {
    const std::string small("\x73\x01\x02\x03", 4);
    EXPECT_EQ(Value(ParseVpd(small + AVpd().Field("PN", "EX-P1").Bytes()), "PN"), "EX-P1");
}

TEST(VpdTest, NothingBehindTheEndIsRead) {
    const Vpd vpd = ParseVpd('\x78' + AVpd().Field("PN", "EX-P1").Bytes());
    EXPECT_EQ(Value(vpd, "PN"), "none");
    EXPECT_TRUE(vpd.is_finished);
}

TEST(VpdTest, FirstOfTwoFieldsWithOneKeywordIsTaken) {
    EXPECT_EQ(Value(ParseVpd(AVpd().Field("PN", "one").Field("PN", "two").Bytes()), "PN"), "one");
}

TEST(VpdTest, TextsAreCleaned) {
    const Vpd vpd = ParseVpd(AVpd()
                                 .Identifier(std::string("EX710\0junk", 10))
                                 .Field("PN", " EX\x01P1 ")
                                 .Field("SN", "\xff")
                                 .Bytes());
    EXPECT_EQ(vpd.identifier, "EX710");
    EXPECT_EQ(Value(vpd, "PN"), "EX P1");
    EXPECT_EQ(Value(vpd, "SN"), "\xEF\xBF\xBD");
}

TEST(VpdTest, FieldThatReachesPastItsListIsLeftOut) {
    const std::string list = std::string("PN\x02P1", 5) + std::string(
                                                              "SN\xff"
                                                              "1",
                                                              4);
    const Vpd vpd = ParseVpd(AVpd::Large('\x90', list) + '\x78');
    EXPECT_EQ(Value(vpd, "PN"), "P1");
    EXPECT_EQ(Value(vpd, "SN"), "none");
}

TEST(VpdTest, KeywordOfOtherBytesEndsTheList) {
    const std::string list =
        std::string("PN\x02P1", 5) + std::string("\xff\xff\x01x", 4) + std::string("SN\x01x", 4);
    EXPECT_EQ(ParseVpd(AVpd::Large('\x90', list)).read_only.size(), 1U);
}

TEST(VpdTest, BlankBytesGiveNothingAndNeedNoMore) {
    for (const char byte : {'\0', '\xff'}) {
        const Vpd vpd = ParseVpd(std::string(64, byte));
        EXPECT_TRUE(vpd.read_only.empty());
        EXPECT_TRUE(vpd.identifier.empty());
        EXPECT_TRUE(vpd.is_finished);
    }
}

TEST(VpdTest, EveryBeginningIsReadWithoutAWrongField) {
    const std::string whole =
        AVpd().Identifier("EX710").Field("PN", "EX-P1").Field("V0", "4.2.1").Bytes();
    for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
        const Vpd vpd = ParseVpd(whole.substr(0, length));
        EXPECT_FALSE(vpd.is_finished) << length;
        for (const auto& [keyword, value] : vpd.read_only) {
            EXPECT_EQ(value, keyword == "PN" ? "EX-P1" : "4.2.1") << length;
        }
    }
}

TEST(VpdTest, ReadingIsFinishedWithTheReadOnlyFields) {
    const std::string whole = AVpd().Identifier("EX710").Field("PN", "EX-P1").Bytes();
    EXPECT_TRUE(ParseVpd(whole.substr(0, whole.size() - 1)).is_finished);
}

TEST(VpdTest, BytesBehindTheAddressSpaceOfADeviceAreNotRead) {
    std::string bytes;
    while (bytes.size() < Vantix::pci::kMaxVpd) bytes += std::string("\x73\x01\x02\x03", 4);
    const Vpd vpd = ParseVpd(bytes + AVpd().Field("PN", "EX-P1").Bytes());
    EXPECT_TRUE(vpd.read_only.empty());
    EXPECT_TRUE(vpd.is_finished);
}

TEST(VpdTest, VersionIsFoundInTheUsualKeywords) {
    for (const char* keyword : {"RM", "LL", "RL", "V0", "V1", "VA", "V3", "VZ"}) {
        EXPECT_EQ(VersionFrom(keyword, "4.2.1"), "4.2.1") << keyword;
    }
}

TEST(VpdTest, OtherKeywordsAreNoVersion) {
    for (const char* keyword : {"PN", "SN", "EC", "MN", "CP", "YA"}) {
        EXPECT_EQ(VersionFrom(keyword, "4.2.1"), "") << keyword;
    }
}

TEST(VpdTest, MicrocodeLevelGoesBeforeTheMakersOwnFields) {
    const auto vpd = ParseVpd(AVpd().Field("V0", "1.0").Field("RM", "2.0").Bytes());
    EXPECT_EQ(FirmwareVersionOf(vpd), "2.0");
}

TEST(VpdTest, UsualFieldsOfTheMakerGoBeforeHisOtherOnes) {
    const auto vpd = ParseVpd(AVpd().Field("V2", "1.0").Field("VA", "2.0").Bytes());
    EXPECT_EQ(FirmwareVersionOf(vpd), "2.0");
}

TEST(VpdTest, FieldThatIsNoVersionIsPassedOver) {
    const auto vpd = ParseVpd(AVpd().Field("V0", "PCIe Gen3 x16").Field("V1", "7.10.64").Bytes());
    EXPECT_EQ(FirmwareVersionOf(vpd), "7.10.64");
}

TEST(VpdTest, LettersThatAnnounceAVersionAreCutOff) {
    EXPECT_EQ(VersionFrom("V0", "FFV21.80.16.89"), "21.80.16.89");
    EXPECT_EQ(VersionFrom("V0", "v2.5"), "v2.5");
    EXPECT_EQ(VersionFrom("V0", "4.2.1, 0x8000 (EX1)"), "4.2.1, 0x8000 (EX1)");
}

TEST(VpdTest, TextsThatAreNoVersionAreRefused) {
    for (const char* text : {"", "DSV1028VPDR.VER2.1", "x16", "12", ".", "1.", ".1", "1..2", "v",
                             "FFV", "A2.1", "http://a.b", "1.2/3", "N/A"}) {
        EXPECT_EQ(VersionFrom("V0", text), "") << text;
    }
}

TEST(VpdTest, WrongChecksumGivesNoVersion) {
    std::string bytes = AVpd().Field("V0", "4.2.1").Bytes();
    bytes[8] = '9';
    const Vpd vpd = ParseVpd(bytes);
    EXPECT_TRUE(vpd.has_checksum);
    EXPECT_FALSE(vpd.is_checksum_right);
    EXPECT_EQ(FirmwareVersionOf(vpd), "");
}

TEST(VpdTest, MissingChecksumIsNoHindrance) {
    const Vpd vpd = ParseVpd(AVpd().Field("V0", "4.2.1").BytesWithoutChecksum());
    EXPECT_FALSE(vpd.has_checksum);
    EXPECT_EQ(FirmwareVersionOf(vpd), "4.2.1");
}

}  // namespace
