#include <gtest/gtest.h>

#include <csignal>

#include "tarsel/interruption.h"

namespace tarsel {
namespace {

using Vantix::VantixConnection::RunContext;

TEST(InterruptionTest, WithoutASignalNothingHappens) {
    const auto run = std::make_shared<RunContext>();
    const Interruption interruption(run);
    EXPECT_EQ(Interruption::Signal(), 0);
    EXPECT_FALSE(run->IsCancelled());
}

class InterruptionSignalTest : public testing::TestWithParam<int> {};

TEST_P(InterruptionSignalTest, FirstSignalCancelsTheRun) {
    const auto run = std::make_shared<RunContext>();
    const Interruption interruption(run);
    std::raise(GetParam());
    EXPECT_TRUE(run->IsCancelled());
    EXPECT_EQ(Interruption::Signal(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptionSignalTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

void RaiseTwice(int first, int second) {
    const Interruption interruption(std::make_shared<RunContext>());
    std::raise(first);
    std::raise(second);
    std::_Exit(0);
}

TEST(InterruptionDeathTest, SecondSignalEndsTheProcessAtOnce) {
    EXPECT_EXIT(RaiseTwice(SIGINT, SIGINT), testing::KilledBySignal(SIGINT), "");
    EXPECT_EXIT(RaiseTwice(SIGINT, SIGTERM), testing::KilledBySignal(SIGTERM), "");
}

TEST(InterruptionTest, IgnoredSignalStaysIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    const auto run = std::make_shared<RunContext>();
    {
        const Interruption interruption(run);
        std::raise(SIGHUP);
    }
    EXPECT_FALSE(run->IsCancelled());
    EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST(InterruptionTest, ClosedPipeIsNoReasonToDie) {
    const Interruption interruption(std::make_shared<RunContext>());
    EXPECT_EQ(std::raise(SIGPIPE), 0);
}

}  // namespace
}  // namespace tarsel
