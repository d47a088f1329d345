// What the two rules of the driver's place make of a scan: a whole reading through a driver, and
// what a user is told where there is nothing to ask through.
#include "platform/ipmi/local_ipmi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "common/result/result_codes.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/ipmi/ipmi_errors.h"
#include "support/fake_clock.h"
#include "support/fake_ipmitool.h"
#include "support/scripted_raw_ipmi.h"
#include "support/temporary_folder.h"
#include "transport/ipmi/raw_ipmi_runner.h"

namespace Vantix::ipmi {
namespace {

using test_support::FakeIpmiTool;
using test_support::RawIpmiScript;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using VantixConnection::ConnectOption;

class LocalIpmiTest : public testing::Test {
  protected:
    LocalIpmiTest() {
        std::filesystem::create_directory(folder_.Path("dev"));
        folder_.Write("dev/ipmi0", "");
        option_.ipmi_interval_ms = 0;
    }
    IpmiChannel Channel() { return {option_, runner_, clock_, folder_.Path("")}; }

    ConnectOption option_;
    RawIpmiScript script_;
    FakeIpmiTool tool_;
    transport::RawIpmiRunner runner_{script_.Opener(), tool_};
    transport::FakeClock clock_;
    test_support::TemporaryFolder folder_;
};

TEST_F(LocalIpmiTest, DeviceIsReadThroughTheDriver) {
    script_.On("raw 0x06 0x01", {0x20, 0x01, 0x09, 0x08, 0x02, 0x9f, 0xfe, 0xff, 0, 0x02, 0x0f});
    IpmiChannel channel = Channel();
    EXPECT_FALSE(channel.Open());
    EXPECT_EQ(transport::FirmwareVersionText(channel.Device()), "9.08");
    EXPECT_TRUE(channel.MainFru().IsEmpty());
    EXPECT_THAT(channel.FruDevices(), IsEmpty());
    EXPECT_THAT(tool_.commands, IsEmpty());
}

TEST_F(LocalIpmiTest, UserIsToldWhatToDoWithoutDriverAndTool) {
    script_.Fail("the driver shows no device; enable it, or install ipmitool");
    tool_.EndNext(transport::CommandEnd::kNotFound);
    const TarselResult result = ResultOfIpmiFailure(Channel().Open(), option_);
    EXPECT_EQ(result.code, CONNECTION_FAILED);
    EXPECT_THAT(result.message,
                AllOf(HasSubstr("this machine's BMC"), HasSubstr("enable it"),
                      HasSubstr("install ipmitool"), HasSubstr("as administrator")));
}

TEST(SystemIpmiRunnerTest, IsOneObject) {
    EXPECT_EQ(&SystemIpmiRunner(), &SystemIpmiRunner());
    EXPECT_THAT(LocalIpmiAdvice(), HasSubstr("run the scan as"));
}

}  // namespace
}  // namespace Vantix::ipmi
