#include "platform/redfish/fresh_start.h"

#include <gtest/gtest.h>

#include <string>

namespace Vantix::redfish {
namespace {

struct DateRow {
    const char* name;
    const char* text;
    std::optional<std::int64_t> seconds;
};

class DateTimeTest : public ::testing::TestWithParam<DateRow> {};

TEST_P(DateTimeTest, IsReadAsSecondsOrNotAtAll) {
    EXPECT_EQ(SecondsOfDateTime(GetParam().text), GetParam().seconds);
}

INSTANTIATE_TEST_SUITE_P(
    Good, DateTimeTest,
    ::testing::Values(DateRow{"Epoch", "1970-01-01T00:00:00Z", 0},
                      DateRow{"Utc", "2025-03-11T08:15:30Z", 1741680930},
                      DateRow{"UtcInSmallLetters", "2025-03-11t08:15:30z", 1741680930},
                      DateRow{"East", "2025-03-11T09:15:30+01:00", 1741680930},
                      DateRow{"West", "2025-03-11T02:45:30-05:30", 1741680930},
                      DateRow{"OffsetWithoutColon", "2025-03-11T02:45:30-0530", 1741680930},
                      DateRow{"Fraction", "2025-03-11T08:15:30.987654Z", 1741680930},
                      DateRow{"FractionAndOffset", "2025-03-11T09:15:30.5+01:00", 1741680930},
                      DateRow{"BlankForT", "2025-03-11 08:15:30Z", 1741680930},
                      DateRow{"LeapDay", "2024-02-29T00:00:00Z", 1709164800},
                      DateRow{"BeforeTheEpoch", "1969-12-31T23:59:59Z", -1}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Bad, DateTimeTest,
    ::testing::Values(DateRow{"Empty", "", std::nullopt},
                      DateRow{"NoOffset", "2025-03-11T08:15:30", std::nullopt},
                      DateRow{"DateAlone", "2025-03-11", std::nullopt},
                      DateRow{"Words", "not available", std::nullopt},
                      DateRow{"ThirteenthMonth", "2025-13-11T08:15:30Z", std::nullopt},
                      DateRow{"ZeroDay", "2025-03-00T08:15:30Z", std::nullopt},
                      DateRow{"NoLeapDay", "2025-02-29T00:00:00Z", std::nullopt},
                      DateRow{"LettersForDigits", "2025-03-11T0x:15:30Z", std::nullopt},
                      DateRow{"ShortOffset", "2025-03-11T08:15:30+1", std::nullopt},
                      DateRow{"LettersInOffset", "2025-03-11T08:15:30+0a:00", std::nullopt},
                      DateRow{"SomethingBehindZ", "2025-03-11T08:15:30Z!", std::nullopt}),
    [](const auto& row) { return row.param.name; });

boost::json::object Manager(const std::string& now, const std::string& reset) {
    return {{"DateTime", now}, {"LastResetTime", reset}};
}

TEST(FreshStartTest, ResetAMinuteAgoIsFresh) {
    EXPECT_TRUE(IsFreshlyStarted(Manager("2025-03-11T08:16:30Z", "2025-03-11T08:15:30Z")));
}

TEST(FreshStartTest, OffsetsAreTakenIntoAccount) {
    EXPECT_TRUE(IsFreshlyStarted(Manager("2025-03-11T09:16:30+01:00", "2025-03-11T08:15:30Z")));
    EXPECT_FALSE(IsFreshlyStarted(Manager("2025-03-11T08:16:30-02:00", "2025-03-11T08:15:30Z")));
}

TEST(FreshStartTest, ThreeMinutesAgoIsNotFreshAnyMore) {
    EXPECT_TRUE(IsFreshlyStarted(Manager("2025-03-11T08:18:29Z", "2025-03-11T08:15:30Z")));
    EXPECT_FALSE(IsFreshlyStarted(Manager("2025-03-11T08:18:30Z", "2025-03-11T08:15:30Z")));
}

TEST(FreshStartTest, ResetInTheFutureTellsNothing) {
    EXPECT_FALSE(IsFreshlyStarted(Manager("2025-03-11T08:15:30Z", "2025-03-11T08:15:31Z")));
}

TEST(FreshStartTest, MissingOrUnreadableTimesTellNothing) {
    EXPECT_FALSE(IsFreshlyStarted({}));
    EXPECT_FALSE(IsFreshlyStarted({{"DateTime", "2025-03-11T08:15:30Z"}}));
    EXPECT_FALSE(IsFreshlyStarted({{"DateTime", 7}, {"LastResetTime", nullptr}}));
}

}  // namespace
}  // namespace Vantix::redfish
