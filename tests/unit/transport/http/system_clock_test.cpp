#include <gtest/gtest.h>

#include "transport/http/http_transport.h"

namespace Vantix::transport {
namespace {

TEST(SystemClockTest, NeverGoesBack) {
    const Clock::TimePoint first = SystemClock().Now();
    EXPECT_GE(SystemClock().Now(), first);
}

TEST(SystemClockTest, WaitLetsTimePass) {
    const Clock::TimePoint before = SystemClock().Now();
    SystemClock().Wait(Milliseconds(2));
    EXPECT_GT(SystemClock().Now(), before);
}

TEST(SystemClockTest, IsOneObject) {
    EXPECT_EQ(&SystemClock(), &SystemClock());
}

}  // namespace
}  // namespace Vantix::transport
