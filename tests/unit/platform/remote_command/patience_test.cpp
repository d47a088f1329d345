#include "platform/remote_command/patience.h"

#include <gtest/gtest.h>

namespace Vantix::remote {
namespace {

using std::chrono::seconds;
using VantixConnection::RunContext;

class PatienceTest : public testing::Test {
  protected:
    Patience Of(seconds limit) {
        return Patience(run_, limit, [this] { return now_; });
    }

    std::shared_ptr<RunContext> run_ = std::make_shared<RunContext>();
    Patience::Clock::time_point now_ = Patience::Clock::now();
};

TEST_F(PatienceTest, LastsUntilTheLimit) {
    const Patience patience = Of(seconds(10));
    now_ += seconds(9);
    EXPECT_FALSE(patience.IsOver());
    now_ += seconds(1);
    EXPECT_TRUE(patience.IsOver());
    EXPECT_TRUE(patience.IsOutOfTime());
}

TEST_F(PatienceTest, LastsForEverWithoutLimit) {
    const Patience patience = Of(seconds(0));
    now_ += std::chrono::hours(10000);
    EXPECT_FALSE(patience.IsOver());
}

TEST_F(PatienceTest, EndsWhenTheUserAsksToStop) {
    const Patience patience = Of(seconds(10));
    run_->Cancel();
    EXPECT_TRUE(patience.IsOver());
    EXPECT_FALSE(patience.IsOutOfTime());
}

TEST_F(PatienceTest, UserOutranksTheLimit) {
    const Patience patience = Of(seconds(10));
    now_ += seconds(10);
    run_->Cancel();
    EXPECT_FALSE(patience.IsOutOfTime());
}

TEST_F(PatienceTest, CleaningHasItsOwnLimitAlone) {
    Patience patience = Of(seconds(10));
    now_ += seconds(20);
    run_->Cancel();
    patience.GrantCleaning(seconds(5));
    EXPECT_FALSE(patience.IsOver());
    now_ += seconds(5);
    EXPECT_TRUE(patience.IsOver());
}

}  // namespace
}  // namespace Vantix::remote
