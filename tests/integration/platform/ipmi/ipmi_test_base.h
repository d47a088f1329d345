// What the tests over IPMI share: options for a peer on the loopback address, and a search path
// with a stand-in for ipmitool.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "support/ipmi_simulator_posix.h"
#include "support/script_file.h"
#include "support/temporary_folder.h"

namespace ipmi_tests {

using Vantix::VantixConnection::ConnectionInfo;
using Vantix::VantixConnection::ConnectOption;

/// Right user and password for the IPMI service at `port`; no HTTPS service is there.
inline ConnectOption OptionFor(int port) {
    ConnectOption option;
    option.target_address = "127.0.0.1";
    option.port = 9;  // discard: nobody listens
    option.ipmi_port = port;
    option.ipmi_interval_ms = 0;
    option.user = test_support::kIpmiUser;
    option.password = test_support::kIpmiPassword;
    return option;
}

/// Tests over the real tools.
class IpmiSimulatorTest : public testing::Test {
  protected:
    void SetUp() override {
        const std::string missing = test_support::IpmiSimulator::Missing();
        if (!missing.empty()) GTEST_SKIP() << missing;
        simulator_ = std::make_unique<test_support::IpmiSimulator>();
        option_ = OptionFor(simulator_->Port());
    }

    std::unique_ptr<test_support::IpmiSimulator> simulator_;
    ConnectOption option_;
};

/// Puts a program named ipmitool first in the search path while it lives.
class StandInTool {
  public:
    explicit StandInTool(const std::string& body) {
        const char* const before = std::getenv("PATH");
        before_ = before == nullptr ? "" : before;
        test_support::WriteScript(folder_, "ipmitool", body);
        setenv("PATH", (folder_.Path("") + ":" + before_).c_str(), 1);
    }
    ~StandInTool() { setenv("PATH", before_.c_str(), 1); }
    StandInTool(const StandInTool&) = delete;
    StandInTool& operator=(const StandInTool&) = delete;

    [[nodiscard]] std::string Path(const std::string& name) const { return folder_.Path(name); }
    [[nodiscard]] std::string Read(const std::string& name) const { return folder_.Read(name); }

  private:
    test_support::TemporaryFolder folder_;
    std::string before_;
};

}  // namespace ipmi_tests
