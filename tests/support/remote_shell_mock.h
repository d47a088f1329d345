// A remote shell whose every answer the test scripts.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "transport/ssh/remote_shell.h"

namespace test_support {

class RemoteShellMock : public Vantix::transport::RemoteShell {
  public:
    MOCK_METHOD(Vantix::transport::SshFailure, Connect, (), (override));
    MOCK_METHOD(Vantix::transport::RemoteOutcome, Execute,
                (const Vantix::transport::RemoteCommand&), (override));
    MOCK_METHOD(Vantix::transport::TransferOutcome, Upload,
                (const std::string&, const std::string&, unsigned), (override));
    MOCK_METHOD(Vantix::transport::TransferOutcome, Download,
                (const std::string&, const std::string&, std::uint64_t), (override));
    MOCK_METHOD(std::string, LoginBanner, (), (const, override));
    MOCK_METHOD(std::vector<std::string>, Notices, (), (const, override));
};

inline Vantix::transport::RemoteOutcome Ends(int exit_status, const std::string& output = "",
                                             const std::string& error_output = "") {
    Vantix::transport::RemoteOutcome outcome;
    outcome.exit_status = exit_status;
    outcome.output = output;
    outcome.error_output = error_output;
    return outcome;
}

inline Vantix::transport::RemoteOutcome Breaks(Vantix::transport::SshProblem problem) {
    Vantix::transport::RemoteOutcome outcome;
    outcome.failure = {problem, "invented words"};
    return outcome;
}

/// A command whose text holds `part`.
MATCHER_P(RunsText, part, "") {
    return arg.command_line.find(part) != std::string::npos;
}

}  // namespace test_support
