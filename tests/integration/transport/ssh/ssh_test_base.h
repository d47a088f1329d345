// A private SSH server and a client that knows its key, for each test.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "support/sshd_posix.h"
#include "support/temporary_folder.h"
#include "transport/ssh/remote_shell.h"

namespace Vantix::transport {

/// More than any file of the tests holds.
inline constexpr std::uint64_t kMuch = 100 * 1024 * 1024;

class SshTest : public testing::Test {
  protected:
    void SetUp() override {
        const std::string missing = test_support::Sshd::Missing();
        if (!missing.empty()) GTEST_SKIP() << missing;
    }

    test_support::Sshd& StartServer(const test_support::SshdSetup& setup = {}) {
        server_ = std::make_unique<test_support::Sshd>(setup);
        return *server_;
    }

    /// The server's own port, or that of something in between; the key is known for it.
    SshTarget Target(int port = 0) {
        SshTarget target;
        target.host = "127.0.0.1";
        target.port = port == 0 ? server_->Port() : port;
        target.user = test_support::kSshUser;
        target.known_hosts_file =
            folder_.Write("known_hosts", server_->KnownHostsLine(target.port));
        target.limits.connect = target.limits.authentication = std::chrono::seconds(20);
        return target;
    }
    SshTarget KeyTarget(int port = 0) {
        SshTarget target = Target(port);
        target.key_file = server_->KeyFile();
        return target;
    }
    SshTarget PasswordTarget(int port = 0) {
        SshTarget target = Target(port);
        target.password = test_support::kSshPassword;
        return target;
    }

    /// A shell logged in with the account's key.
    std::unique_ptr<RemoteShell> LoggedIn(const SshTarget& target) {
        auto shell = MakeSshShell(target);
        const SshFailure failure = shell->Connect();
        EXPECT_FALSE(failure) << failure.text << "\n" << server_->Log();
        return shell;
    }

    static RemoteCommand Line(const std::string& command_line) {
        RemoteCommand command;
        command.command_line = command_line;
        return command;
    }

    test_support::TemporaryFolder folder_;
    std::unique_ptr<test_support::Sshd> server_;
};

}  // namespace Vantix::transport
