#include "platform/redfish/text_rules.h"

#include <gmock/gmock.h>

namespace Vantix::redfish {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TextRulesTest, WordsEndAtMarksDigitsAndInnerCapitals) {
    EXPECT_THAT(Words("SystemRomActive"), ElementsAre("system", "rom", "active"));
    EXPECT_THAT(Words("MB_CPLD1"), ElementsAre("mb", "cpld", "1"));
    EXPECT_THAT(Words("PCIe Slot-03"), ElementsAre("pcie", "slot", "03"));
    EXPECT_THAT(Words("Slot=14:Port=2"), ElementsAre("slot", "14", "port", "2"));
    EXPECT_THAT(Words(" -- "), IsEmpty());
    EXPECT_THAT(Words(""), IsEmpty());
}

TEST(TextRulesTest, WordsAreFoundWholeOnly) {
    EXPECT_TRUE(HasAnyWord(Words("Main BIOS"), {"uefi", "bios"}));
    EXPECT_FALSE(HasAnyWord(Words("VBIOS"), {"uefi", "bios"}));
}

TEST(TextRulesTest, BoardMakersDefaultsArePlaceholders) {
    for (const char* text : {"",
                             "  ",
                             "To be filled by O.E.M.",
                             "TO BE FILLED BY O.E.M.",
                             "Default string",
                             "Not Specified",
                             "System Serial Number",
                             "System Product Name",
                             "N/A",
                             "None",
                             "Unknown",
                             "0123456789",
                             "1234567890",
                             "123456",
                             "01234567890123456789AB",
                             "9876543210",
                             "0000000000",
                             "XXXXXXXX",
                             "........",
                             "0",
                             "-"}) {
        EXPECT_TRUE(IsPlaceholder(text)) << '"' << text << '"';
    }
}

TEST(TextRulesTest, RealTextsAreNoPlaceholders) {
    for (const char* text : {"3500", "8675309", "EXTV0001", "A0", "12", "01234X", "Default Server",
                             "000000000001", "0123999", "Model 0123456789"}) {
        EXPECT_FALSE(IsPlaceholder(text)) << '"' << text << '"';
    }
}

TEST(TextRulesTest, NoVersionTextsAreKnown) {
    for (const char* text : {"", " ", "N/A", "na", "Not Present", "version not available",
                             "Not Available", "Unknown", "null", "-"}) {
        EXPECT_TRUE(IsNoVersion(text)) << '"' << text << '"';
    }
}

TEST(TextRulesTest, OddVersionsAreVersions) {
    for (const char* text : {"ff", "0", "0x12", "00.00", "1.14.00 May 28 2025", "C27"}) {
        EXPECT_FALSE(IsNoVersion(text)) << '"' << text << '"';
    }
}

TEST(TextRulesTest, KnownEmptiesPlaceholdersOnly) {
    EXPECT_EQ("", Known("Default string"));
    EXPECT_EQ("EX100", Known("EX100"));
}

TEST(TextRulesTest, FirstOfSkipsEmptyTexts) {
    EXPECT_EQ("b", FirstOf({"", "b", "c"}));
    EXPECT_EQ("", FirstOf({"", ""}));
}

TEST(TextRulesTest, ContainsIgnoresCaseOfTheTextOnly) {
    EXPECT_TRUE(ContainsIgnoringCase("MegaRAC SP-X", "megarac"));
    EXPECT_FALSE(ContainsIgnoringCase("Mega", "megarac"));
}

}  // namespace
}  // namespace Vantix::redfish
