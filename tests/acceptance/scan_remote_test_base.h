// The built command against a real SSH server with an invented account.
#pragma once

#include <memory>
#include <string>

#include "acceptance/tarsel_command_test_base.h"
#include "support/sshd_posix.h"

namespace acceptance {

class ScanRemoteTestBase : public TarselCommandTestBase {
  protected:
    void SetUp() override {
        const std::string missing = test_support::Sshd::Missing();
        if (!missing.empty()) GTEST_SKIP() << missing;
        StartServer();
    }

    void StartServer(const test_support::SshdSetup& setup = {}) {
        server_ = std::make_unique<test_support::Sshd>(setup);
        known_hosts_ = folder_.Write("known_hosts", server_->KnownHostsLine());
    }

    [[nodiscard]] std::string Home(const std::string& name) const {
        return server_->Home() + "/" + name;
    }

    [[nodiscard]] std::string ServerTarget() const {
        return std::string(test_support::kSshUser) +
               "@127.0.0.1:" + std::to_string(server_->Port());
    }

    /// "scan --remoteos SERVER", the server known, the password in the environment, and more.
    [[nodiscard]] test_support::ChildSetup RemoteScan(const Arguments& more) const {
        Arguments arguments = {"--known-hosts", known_hosts_};
        arguments.insert(arguments.end(), more.begin(), more.end());
        test_support::ChildSetup setup =
            UntrustingScanOf({"--remoteos", ServerTarget()}, arguments);
        setup.environment["TARSEL_PASSWORD"] = test_support::kSshPassword;
        return setup;
    }

    /// The same, running this instead of the tool.
    [[nodiscard]] test_support::ChildSetup RemoteScanBy(const std::string& command,
                                                        const Arguments& more = {}) const {
        Arguments arguments = {"--remote-command", "pwd >~/folder; " + command};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RemoteScan(arguments);
    }

    /// A command that leaves a common result with this code.
    static std::string LeaveResult(const std::string& code, const std::string& message = "Said.") {
        return "printf '<RESULT><CODE>" + code + "</CODE><MESSAGE>" + message +
               "</MESSAGE></RESULT>' >{folder}/common_result.xml";
    }

    /// The private folder that the command of RemoteScanBy ran in.
    [[nodiscard]] std::string RemoteFolder() const {
        const std::string line = test_support::TemporaryFolder::ReadFile(Home("folder"));
        return line.substr(0, line.find('\n'));
    }

    std::unique_ptr<test_support::Sshd> server_;
    std::string known_hosts_;
};

}  // namespace acceptance
