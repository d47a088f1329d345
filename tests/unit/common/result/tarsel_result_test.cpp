#include "common/result/tarsel_result.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <string>

#include "common/result/result_codes.h"
#include "support/grouping_locale.h"

namespace {

std::string Streamed(const TarselResult& result) {
    std::ostringstream out;
    out << result;
    return out.str();
}

TEST(TarselResultTest, CodeAloneTakesItsRegisteredText) {
    const TarselResult result(GET_OS_TYPE_FAILED);
    EXPECT_EQ(result.code, 0x1006F);
    EXPECT_EQ(result.message, "Failed to get OS type.");
}

TEST(TarselResultTest, EmptyMessageStaysEmpty) {
    const TarselResult result(GENERIC_FAILURE, "");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.message, "");
}

TEST(TarselResultTest, IntegerTurnsIntoAResultWithText) {
    const TarselResult result = 0x6D3;
    EXPECT_EQ(result.message, "Failed to get firmware information.");
}

TEST(TarselResultTest, CopyAndAssignmentTakeBothFields) {
    const TarselResult source(0x10074, "own words");
    TarselResult copy(source);
    TarselResult assigned(SUCCEED);
    assigned = source;
    EXPECT_EQ(copy.code, 0x10074);
    EXPECT_EQ(copy.message, "own words");
    EXPECT_EQ(assigned.code, 0x10074);
    EXPECT_EQ(assigned.message, "own words");
}

TEST(TarselResultTest, ComparisonIgnoresTheModuleNumber) {
    const TarselResult result(0x10074, "");
    EXPECT_TRUE(result == 0x20074);
    EXPECT_TRUE(result == 0x74);
    EXPECT_FALSE(result != 0x20074);
    EXPECT_FALSE(result == 0x75);
    EXPECT_TRUE(result != 0x10075);
}

TEST(TarselResultTest, ZeroLowHalfIsASuccess) {
    EXPECT_TRUE(TarselResult(SUCCEED, "").IsSucceed());
    EXPECT_TRUE(TarselResult(0x10000, "").IsSucceed());
    EXPECT_FALSE(TarselResult(0x10001, "").IsSucceed());
    EXPECT_FALSE(TarselResult(-1, "").IsSucceed());
}

TEST(TarselResultTest, StreamShowsLowHalfAndRegisteredTextWhenMessageIsEmpty) {
    EXPECT_EQ(Streamed(TarselResult(0x1006F, "")), "111 Failed to get OS type.");
    EXPECT_EQ(Streamed(TarselResult(0x10069, "")), "105 Update package not found.");
}

TEST(TarselResultTest, StreamShowsOwnMessageWhenThereIsOne) {
    EXPECT_EQ(Streamed(TarselResult(0x1006F, "x")), "111 x");
}

TEST(TarselResultTest, StreamShowsLowHalfUnsigned) {
    EXPECT_EQ(Streamed(TarselResult(-1, "m")), "65535 m");
    EXPECT_EQ(Streamed(TarselResult(0x1006D, "m")), "109 m");
}

TEST(TarselResultTest, StreamedNumberIgnoresFormatFlags) {
    std::ostringstream out;
    out << std::hex << std::showbase << std::showpos << TarselResult(0x6D3, "m");
    EXPECT_EQ(out.str(), "1747 m");
}

TEST(TarselResultTest, StreamedNumberIgnoresAGroupingLocale) {
    std::ostringstream out;
    out.imbue(test_support::GroupingLocale());
    out << TarselResult(0x6D3, "m");
    EXPECT_EQ(out.str(), "1747 m");
}

TEST(GetResultMessageTest, RegisteredCodesReadTheirTexts) {
    EXPECT_EQ(GetResultMessage(0), "Succeed.");
    EXPECT_EQ(GetResultMessage(0x10069), "Update package not found.");
}

TEST(GetResultMessageTest, CodesWithBitsEightToFifteenReadTheUpdateErrorTable) {
    EXPECT_EQ(GetResultMessage(0x62B), "Failed to update due to ESXI internal error.");
    EXPECT_EQ(GetResultMessage(0xB01), "Invalid IP address.");
}

TEST(GetResultMessageTest, UpdateInProgressReadsItsRegisteredText) {
    EXPECT_EQ(GetResultMessage(0x10075), "Another update in progress.");
}

TEST(GetResultMessageTest, UnknownUpdateErrorCodeYieldsItsFallbackText) {
    EXPECT_EQ(GetResultMessage(0x6FF), "Unknown error");
}

TEST(GetResultMessageTest, UnknownRegistryCodeYieldsItsFallbackText) {
    EXPECT_EQ(GetResultMessage(0x5007D), "Unknow error");
    EXPECT_EQ(GetResultMessage(0x47), "Unknow error");
}

TEST(GetResultMessageTest, ModuleBitsDoNotLeadAwayFromTheUpdateErrorTable) {
    EXPECT_EQ(GetResultMessage(0x10101), "Unknown error");
    EXPECT_EQ(GetResultMessage(-1), "Unknown error");
}

TEST(GetResultMessageTest, NegativeCodeWithClearMiddleBitsIsUnknownToTheRegistry) {
    EXPECT_EQ(GetResultMessage(static_cast<int>(0x80000001U)), "Unknow error");
}

}  // namespace
