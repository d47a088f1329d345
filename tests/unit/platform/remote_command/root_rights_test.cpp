#include "platform/remote_command/root_rights.h"

#include <gmock/gmock.h>

#include "support/remote_shell_mock.h"

namespace Vantix::remote {
namespace {

using test_support::Breaks;
using test_support::Ends;
using test_support::RunsText;
using testing::AllOf;
using testing::Field;
using testing::HasSubstr;
using testing::Not;
using testing::Return;
using transport::RemoteCommand;

constexpr const char* kPassword = "Invented-Pass-7";

class RootRightsTest : public testing::Test {
  protected:
    RootRightsTest() {
        machine_.user = "tester";
        machine_.tool = "/opt/a b/bin/tarsel";
        machine_.folder = "/tmp/tarsel.Abc123";
    }

    RootRights Find(const std::string& password) {
        return FindRootRights(shell_, machine_, password);
    }

    RemoteMachine machine_;
    testing::StrictMock<test_support::RemoteShellMock> shell_;
};

TEST_F(RootRightsTest, RootAsksNobody) {
    machine_.is_root = true;
    const RootRights rights = Find(kPassword);
    EXPECT_EQ(rights.call.tool, machine_.tool);
    EXPECT_EQ(rights.call.sudo, "");
    EXPECT_EQ(rights.input, "");
    EXPECT_EQ(rights.notice, "");
}

TEST_F(RootRightsTest, SudoWithoutPasswordIsTriedFirst) {
    EXPECT_CALL(shell_, Execute(AllOf(RunsText("sudo -n -- '/opt/a b/bin/tarsel' --version"),
                                      Field(&RemoteCommand::input, ""))))
        .WillOnce(Return(Ends(0)));
    const RootRights rights = Find(kPassword);
    EXPECT_EQ(rights.call.sudo, "sudo -n --");
    EXPECT_FALSE(rights.call.reads_password);
    EXPECT_EQ(rights.input, "");
    EXPECT_EQ(rights.end_prefix, "sudo -n --");
}

TEST_F(RootRightsTest, PasswordTravelsOnTheStandardInputOnly) {
    EXPECT_CALL(shell_, Execute(RunsText("sudo -n"))).WillOnce(Return(Ends(1)));
    EXPECT_CALL(shell_, Execute(AllOf(RunsText("sudo -k -S -p tarsel-"), Not(RunsText(kPassword)),
                                      Field(&RemoteCommand::input, "Invented-Pass-7\n"))))
        .WillOnce(Return(Ends(0)));
    const RootRights rights = Find(kPassword);
    EXPECT_TRUE(rights.call.reads_password);
    EXPECT_EQ(rights.input, "Invented-Pass-7\n");
    EXPECT_EQ(rights.end_input, "Invented-Pass-7\n");
    EXPECT_THAT(rights.call.sudo, Not(HasSubstr(kPassword)));
    EXPECT_EQ(rights.notice, "");
}

TEST_F(RootRightsTest, WithoutRightsTheSudoersLineIsTold) {
    EXPECT_CALL(shell_, Execute(RunsText("sudo -n")))
        .WillOnce(Return(Ends(1, "", "sudo: a password is required\n")));
    const RootRights rights = Find("");
    EXPECT_EQ(rights.call.sudo, "");
    EXPECT_THAT(rights.notice, HasSubstr("(sudo says: sudo: a password is required)"));
    EXPECT_THAT(rights.notice, HasSubstr("\"tester ALL=(root) NOPASSWD: /opt/a b/bin/tarsel\""));
}

TEST_F(RootRightsTest, LineForSudoersNamesNoPlaceThatWillBeGone) {
    machine_.tool = machine_.folder + "/tool/bin/tarsel";
    EXPECT_CALL(shell_, Execute(RunsText("sudo -n"))).WillOnce(Return(Ends(1)));
    EXPECT_THAT(Find("").notice, HasSubstr("NOPASSWD: /usr/local/bin/tarsel\""));
}

TEST_F(RootRightsTest, WrongPasswordIsTriedOnceAndThePromptIsNotShown) {
    EXPECT_CALL(shell_, Execute(RunsText("sudo -n"))).WillOnce(Return(Ends(1)));
    EXPECT_CALL(shell_, Execute(RunsText("sudo -k -S"))).WillOnce([](const RemoteCommand& command) {
        const std::size_t start = command.command_line.find("-p ") + 3;
        const std::string prompt =
            command.command_line.substr(start, command.command_line.find(' ', start) - start);
        return Ends(1, "", "A lecture.\n" + prompt + "Sorry, try again.\n" + prompt);
    });
    const RootRights rights = Find(kPassword);
    EXPECT_EQ(rights.call.sudo, "");
    EXPECT_EQ(rights.input, "");
    EXPECT_THAT(rights.notice, HasSubstr("(sudo says: Sorry, try again.)"));
}

TEST_F(RootRightsTest, BrokenChannelEndsTheSearch) {
    EXPECT_CALL(shell_, Execute).WillOnce(Return(Breaks(transport::SshProblem::kConnectionLost)));
    const RootRights rights = Find(kPassword);
    EXPECT_EQ(rights.failure.problem, transport::SshProblem::kConnectionLost);
    EXPECT_EQ(rights.notice, "");
}

TEST_F(RootRightsTest, SudoThatHangsCostsItsRightsNotTheScan) {
    EXPECT_CALL(shell_, Execute).WillOnce(Return(Breaks(transport::SshProblem::kDeadline)));
    const RootRights rights = Find(kPassword);
    EXPECT_FALSE(rights.failure);
    EXPECT_EQ(rights.call.sudo, "");
    EXPECT_EQ(rights.input, "");
    EXPECT_THAT(rights.notice, HasSubstr("(sudo says: no answer within a minute)"));
}

TEST_F(RootRightsTest, SudoThatHangsWithThePasswordCostsItsRightsNotTheScan) {
    EXPECT_CALL(shell_, Execute(RunsText("sudo -n"))).WillOnce(Return(Ends(1)));
    EXPECT_CALL(shell_, Execute(RunsText("sudo -k -S")))
        .WillOnce(Return(Breaks(transport::SshProblem::kDeadline)));
    const RootRights rights = Find(kPassword);
    EXPECT_FALSE(rights.failure);
    EXPECT_EQ(rights.call.sudo, "");
    EXPECT_EQ(rights.input, "");
}

TEST_F(RootRightsTest, ControlBytesOfSudoDoNotReachTheNotice) {
    EXPECT_CALL(shell_, Execute)
        .WillOnce(Return(Ends(1, "",
                              "\x1B]0;x\x07"
                              "sudo: no\n")));
    EXPECT_THAT(Find("").notice, Not(HasSubstr("\x1B")));
}

}  // namespace
}  // namespace Vantix::remote
