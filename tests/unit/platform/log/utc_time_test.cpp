#include "platform/log/utc_time.h"

#include <gtest/gtest.h>

namespace Vantix {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using TimePoint = std::chrono::system_clock::time_point;

TEST(UtcTimeTest, EpochIsTheFirstSecondOf1970) {
    EXPECT_EQ(UtcSecondsText(TimePoint()), "1970-01-01T00:00:00Z");
}

TEST(UtcTimeTest, LeapDayIsCounted) {
    EXPECT_EQ(UtcSecondsText(TimePoint(seconds(1709164799))), "2024-02-28T23:59:59Z");
    EXPECT_EQ(UtcSecondsText(TimePoint(seconds(1709164800))), "2024-02-29T00:00:00Z");
}

TEST(UtcTimeTest, MillisecondsHaveThreeDigits) {
    EXPECT_EQ(UtcMillisecondsText(TimePoint(milliseconds(7))), "1970-01-01T00:00:00.007Z");
}

TEST(UtcTimeTest, FractionsAreCutNotRounded) {
    EXPECT_EQ(UtcSecondsText(TimePoint(milliseconds(1999))), "1970-01-01T00:00:01Z");
}

}  // namespace
}  // namespace Vantix
