#include "platform/ipmi/bootstrap_account.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "common/result/result_codes.h"
#include "platform/ipmi/local_ipmi.h"
#include "platform/log/log_settings.h"
#include "support/fake_clock.h"
#include "support/fake_ipmitool.h"
#include "support/temporary_folder.h"

namespace Vantix::ipmi {
namespace {

using test_support::FakeIpmiTool;
using test_support::TemporaryFolder;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using transport::CommandEnd;
using VantixConnection::BmcAccount;
using VantixConnection::ConnectOption;

constexpr const char* kLine = "raw 0x2c 0x02 0x52 0xa5";
constexpr const char* kPassword = "invented-pass-01";

std::string AnswerText() {
    transport::Bytes bytes = {0x52};
    for (std::string text : {std::string("host1"), std::string(kPassword)}) {
        text.resize(16);
        bytes.insert(bytes.end(), text.begin(), text.end());
    }
    return " " + transport::HexBytes(bytes) + "\n";
}

class BootstrapAccountTest : public testing::Test {
  protected:
    BootstrapAccountTest() {
        std::filesystem::create_directory(folder_.Path("dev"));
        folder_.Write("dev/ipmi0", "");
        option_.connect_mode = VantixConnection::kConnectModeInbandBmc;
        option_.target_address = "127.0.0.1";
        tool_.On(kLine, AnswerText());
    }
    ~BootstrapAccountTest() override { ShutdownLog(); }

    TarselResult Ask() {
        return GetBootstrapAccount(option_, tool_, clock_, account_, folder_.Path(""));
    }

    ConnectOption option_;
    FakeIpmiTool tool_;
    transport::FakeClock clock_;
    TemporaryFolder folder_;
    BmcAccount account_{"old", "old"};
};

TEST_F(BootstrapAccountTest, AccountOfTheBmcComesBack) {
    EXPECT_TRUE(Ask().IsSucceed());
    EXPECT_EQ(account_.user, "host1");
    EXPECT_EQ(account_.password, kPassword);
    EXPECT_THAT(tool_.Lines(), ElementsAre(kLine));
}

TEST_F(BootstrapAccountTest, LocalDeviceIsAskedAlsoWhereAnAddressIsGiven) {
    EXPECT_TRUE(Ask().IsSucceed());
    ASSERT_THAT(tool_.commands, SizeIs(1));
    EXPECT_EQ(tool_.ValueOf(0, "-I"), "open");
    EXPECT_EQ(tool_.ValueOf(0, "-H"), "");
}

TEST_F(BootstrapAccountTest, PasswordIsMaskedInTheLogFromThenOn) {
    LogSettings settings;
    settings.file = folder_.Path("test.log");
    settings.file_level = 4;
    ASSERT_THAT(ConfigureLog(settings), IsEmpty());
    EXPECT_TRUE(Ask().IsSucceed());
    EXPECT_EQ(MaskSecrets(std::string("it is ") + kPassword), "it is ******");
    ShutdownLog();
    EXPECT_THAT(folder_.Read("test.log"), AllOf(Not(IsEmpty()), Not(HasSubstr(kPassword))));
}

TEST_F(BootstrapAccountTest, MissingDeviceIsToldAndNothingStarted) {
    std::filesystem::remove(folder_.Path("dev/ipmi0"));
    const TarselResult result = Ask();
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message, AllOf(HasSubstr("IPMI device"), HasSubstr("--user")));
    EXPECT_THAT(tool_.commands, IsEmpty());
    EXPECT_EQ(account_.user, "");
}

TEST_F(BootstrapAccountTest, RecordedTreeHasNoDevice) {
    option_.system_root = folder_.Path("");
    EXPECT_EQ(Ask().code, KCS_CONNECT_FAILED);
    EXPECT_THAT(tool_.commands, IsEmpty());
}

TEST_F(BootstrapAccountTest, ForbiddenDeviceAsksForRights) {
    tool_.FailNext("Could not open device at /dev/ipmi0 or /dev/ipmi/0: Permission denied\n");
    const TarselResult result = Ask();
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message,
                AllOf(HasSubstr("Permission denied"), HasSubstr(LocalIpmiAdvice())));
}

TEST_F(BootstrapAccountTest, MissingToolIsNamed) {
    tool_.EndNext(CommandEnd::kNotFound);
    const TarselResult result = Ask();
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message, HasSubstr("install the package ipmitool"));
}

TEST_F(BootstrapAccountTest, SilentBmcIsTold) {
    tool_.EndNext(CommandEnd::kTimedOut);
    const TarselResult result = Ask();
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message, HasSubstr("does not answer"));
}

TEST_F(BootstrapAccountTest, SwitchedOffBootstrappingIsTold) {
    tool_.On(kLine, "");
    tool_.RefuseWith("0x80");
    const TarselResult result = Ask();
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message, HasSubstr("switched off"));
}

TEST_F(BootstrapAccountTest, BmcThatDoesNotKnowTheCommandIsTold) {
    tool_.On(kLine, "");
    const TarselResult result = Ask();
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message, HasSubstr("completion code 0xc1"));
    EXPECT_EQ(account_.user, "");
}

TEST_F(BootstrapAccountTest, HalfAnAnswerIsNoneAndNotShown) {
    tool_.On(kLine, " 52 68 6f 73 74\n");
    const TarselResult result = Ask();
    EXPECT_EQ(result.code, KCS_CONNECT_FAILED);
    EXPECT_THAT(result.message, AllOf(HasSubstr("not usable"), Not(HasSubstr("68 6f"))));
}

TEST_F(BootstrapAccountTest, InterruptedRunIsNoRefusal) {
    option_.run->Cancel();
    EXPECT_EQ(Ask().code, INTERRUPTED_BY_USER);
    EXPECT_THAT(tool_.commands, IsEmpty());
}

TEST_F(BootstrapAccountTest, InterruptionWhileAskingIsNoRefusal) {
    tool_.EndNext(CommandEnd::kCancelled);
    EXPECT_EQ(Ask().code, INTERRUPTED_BY_USER);
}

}  // namespace
}  // namespace Vantix::ipmi
