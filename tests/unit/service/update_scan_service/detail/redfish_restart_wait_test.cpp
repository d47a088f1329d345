#include "service/update_scan_service/detail/redfish_restart_wait.h"

#include "support/bmc_scan_test_base.h"

namespace service::detail {
namespace {

using support::IsConnection;
using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Return;

class RedfishRestartWaitTest : public support::BmcScanTestBase {
  protected:
    RedfishRestartWaitTest() { EXPECT_CALL(platform_, SystemCheckConstructor(_, _, _, _, _, _)); }

    void Wait(int attempt, std::int64_t start_seconds) {
        Vantix::SystemCheck system_check("", "", "", "", "", "");
        WaitForRedfishRestart(system_check, rest_, attempt, start_seconds);
    }

    void SettingIs(int minutes) {
        EXPECT_CALL(platform_, GetGlobalConfigValue("BMC_REDFISH_WAIT_RESTARTING_TIME", 5))
            .WillOnce(Return(minutes));
    }
    void ServiceIsStarting(bool starting) {
        EXPECT_CALL(platform_,
                    IsRedfishServiceStarting(IsConnection(rest_), "/redfish/v1/UpdateService"))
            .WillOnce(Return(starting))
            .RetiresOnSaturation();
    }
    void ClockShows(std::int64_t seconds) {
        EXPECT_CALL(platform_, MonotonicSeconds()).WillOnce(Return(seconds)).RetiresOnSaturation();
    }
    void SleepsTenSeconds() {
        EXPECT_CALL(platform_, SleepMilliseconds(10000)).RetiresOnSaturation();
    }
};

TEST_F(RedfishRestartWaitTest, FirstAttemptAsksAndLogsNothing) {
    Wait(1, 100);
    EXPECT_THAT(log_.Records(), IsEmpty());
}

TEST_F(RedfishRestartWaitTest, ServiceThatIsUpIsNotWaitedFor) {
    const testing::InSequence in_sequence;
    SettingIs(5);
    ServiceIsStarting(false);
    Wait(2, 100);
    EXPECT_THAT(log_.Texts(3),
                ElementsAre("Retry on REST again(the 2 times)", "The retry for REST finished."));
}

TEST_F(RedfishRestartWaitTest, StartingServiceIsAskedAgainEveryTenSeconds) {
    const testing::InSequence in_sequence;
    SettingIs(5);
    ServiceIsStarting(true);
    ClockShows(100);
    SleepsTenSeconds();
    ServiceIsStarting(true);
    ClockShows(110);
    SleepsTenSeconds();
    ServiceIsStarting(false);
    Wait(3, 100);
    EXPECT_TRUE(log_.Has(3, "Retry on REST again(the 3 times)"));
}

TEST_F(RedfishRestartWaitTest, WaitEndsWhenTheMinutesOfTheSettingArePast) {
    const testing::InSequence in_sequence;
    SettingIs(2);
    ServiceIsStarting(true);
    ClockShows(100 + 119);
    SleepsTenSeconds();
    ServiceIsStarting(true);
    ClockShows(100 + 120);
    Wait(2, 100);
    EXPECT_TRUE(log_.Has(3, "The retry for REST finished."));
}

TEST_F(RedfishRestartWaitTest, SettingOfZeroMinutesNeverSleeps) {
    SettingIs(0);
    ServiceIsStarting(true);
    ClockShows(100);
    Wait(2, 100);
}

}  // namespace
}  // namespace service::detail
