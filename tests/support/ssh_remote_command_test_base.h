// A remote command over a shell that the test scripts.
#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "common/result/result_codes.h"
#include "platform/remote_command/ssh_remote_command.h"
#include "support/remote_shell_mock.h"
#include "support/temporary_folder.h"

namespace Vantix::remote {

inline constexpr const char* kFolder = "/tmp/tarsel.Abc123";
inline constexpr const char* kMachine =
    "system Linux\nmachine x86_64\nuser 0\nname root\nfolder /tmp/tarsel.Abc123\n";
inline constexpr const char* kTool = "tool /usr/bin/tarsel\nversion tarsel 0.1.0\n";
inline constexpr const char* kPackageName = "tarsel-0.1.0-Linux-x86_64.tar.gz";

inline transport::TransferOutcome Sent(
    transport::SshProblem problem = transport::SshProblem::kNone) {
    transport::TransferOutcome outcome;
    outcome.failure.problem = problem;
    outcome.way = problem == transport::SshProblem::kNone ? transport::TransferWay::kSftp
                                                          : transport::TransferWay::kNone;
    return outcome;
}

class SshRemoteCommandTest : public testing::Test {
  protected:
    SshRemoteCommandTest() {
        settings_.target = "server7";
        settings_.output_dir = output_.Path("");
        settings_.tool_version = "0.1.0";
        settings_.run = run_;
        settings_.patience = std::make_shared<Patience>(run_, std::chrono::seconds(0));
        std::filesystem::create_directory(packages_.Path("empty"));
    }

    // The machine answers like this unless a test says otherwise.
    void AnswersWith(const std::string& machine) {
        ON_CALL(shell(), Execute(test_support::RunsText("mktemp -d")))
            .WillByDefault(testing::Return(test_support::Ends(0, machine)));
    }

    testing::NiceMock<test_support::RemoteShellMock>& shell() { return *shell_; }

    std::unique_ptr<SshRemoteCommand> Make() {
        return std::make_unique<SshRemoteCommand>(std::move(owned_), settings_);
    }

    std::unique_ptr<SshRemoteCommand> MakeReady(const std::string& machine = std::string(kMachine) +
                                                                             kTool) {
        AnswersWith(machine);
        auto remote = Make();
        EXPECT_EQ(remote->Setup().code, SUCCEED);
        return remote;
    }

    // The private folder holds these; each is fetched with its name as content.
    void FolderHolds(const std::string& listing) {
        ON_CALL(shell(), Execute(test_support::RunsText("printf 'file %s")))
            .WillByDefault(testing::Return(test_support::Ends(0, listing)));
        ON_CALL(shell(), Download)
            .WillByDefault(
                [](const std::string& remote_path, const std::string& local_path, std::uint64_t) {
                    std::ofstream(local_path) << remote_path;
                    return Sent();
                });
    }

    test_support::TemporaryFolder output_;
    test_support::TemporaryFolder packages_;
    std::shared_ptr<VantixConnection::RunContext> run_ =
        std::make_shared<VantixConnection::RunContext>();
    RemoteSettings settings_;
    std::unique_ptr<testing::NiceMock<test_support::RemoteShellMock>> owned_ =
        std::make_unique<testing::NiceMock<test_support::RemoteShellMock>>();
    testing::NiceMock<test_support::RemoteShellMock>* shell_ = owned_.get();
};

}  // namespace Vantix::remote
