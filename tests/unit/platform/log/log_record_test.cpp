#include "platform/log/log_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantix {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::chrono::system_clock::time_point kEpoch;

std::string Record(const std::string& text) {
    return FormatLogRecord(3, "source", 12, text, kEpoch);
}

TEST(LogRecordTest, BeginsWithTimeLevelAndPlace) {
    EXPECT_EQ(Record("text"), "1970-01-01T00:00:00.000Z [3] source:12 text");
}

TEST(LogRecordTest, FurtherLinesAreIndented) {
    EXPECT_THAT(Record("first\nsecond\nthird"), HasSubstr("first\n    second\n    third"));
}

TEST(LogRecordTest, WindowsLineEndsCountAsOne) {
    EXPECT_THAT(Record("first\r\nsecond"), HasSubstr("first\n    second"));
}

TEST(LogRecordTest, PeerTextCannotBeginALineOfItsOwn) {
    const std::string record = Record("answer\n1970-01-01T00:00:00.000Z [1] forged:1 record");
    EXPECT_THAT(record, Not(HasSubstr("\n1970")));
}

TEST(LogRecordTest, ControlBytesBecomeBlanks) {
    EXPECT_THAT(Record("a\x1B[2Jb\rc\x7F\td"), HasSubstr("a [2Jb c \td"));
}

TEST(LogRecordTest, TextOutsideAsciiIsKept) {
    EXPECT_THAT(Record("gr\xC3\xBC\xC3\x9F"), HasSubstr("\xC3\xBC"));
}

TEST(LogRecordTest, TrailingLineEndsAreDropped) {
    EXPECT_EQ(Record("text\n\n"), "1970-01-01T00:00:00.000Z [3] source:12 text");
}

TEST(LogRecordTest, EmptyTextKeepsThePlace) {
    EXPECT_EQ(Record(""), "1970-01-01T00:00:00.000Z [3] source:12 ");
}

TEST(LogRecordTest, MissingSourceIsTolerated) {
    EXPECT_EQ(FormatLogRecord(1, nullptr, 1, "x", kEpoch), "1970-01-01T00:00:00.000Z [1] :1 x");
}

TEST(LogRecordTest, HugeTextIsCutAndSaysByHowMuch) {
    const std::string record = Record(std::string(kLongestLogRecord + 77, 'x'));
    EXPECT_LT(record.size(), kLongestLogRecord + 200);
    EXPECT_THAT(record, HasSubstr("... (77 bytes more)"));
}

}  // namespace
}  // namespace Vantix
