// The real ipmitool, watched from outside while it tries to log in.
#include <filesystem>
#include <future>
#include <string>

#include "integration/platform/ipmi/ipmi_test_base.h"

namespace ipmi_tests {
namespace {

namespace fs = std::filesystem;
using test_support::SilentUdpPort;
using test_support::TemporaryFolder;

constexpr const char* kWatchedPassword = "Watched-Pass-0815";

struct Sighting {
    bool is_tool_seen = false;
    bool is_secret_seen = false;
};

void LookAt(const fs::path& process, const std::string& port, Sighting& sighting) {
    const std::string command_line = TemporaryFolder::ReadFile((process / "cmdline").string());
    const std::string environment = TemporaryFolder::ReadFile((process / "environ").string());
    if (command_line.find("lanplus") != std::string::npos &&
        command_line.find(port) != std::string::npos) {
        sighting.is_tool_seen = true;
    }
    const std::string all = command_line + environment;
    if (all.find(kWatchedPassword) != std::string::npos) sighting.is_secret_seen = true;
}

TEST(IpmiSecretsTest, PasswordIsNeverSeenWhileTheToolRuns) {
    const std::string missing = test_support::IpmiSimulator::Missing();
    if (!missing.empty()) GTEST_SKIP() << missing;
    const SilentUdpPort silence;
    ConnectOption option = OptionFor(silence.Port());
    option.password = kWatchedPassword;
    option.deadline_seconds = 3;
    auto scan = std::async(std::launch::async, [&option] {
        ConnectionInfo connection;
        return FetchIPMIConnection(option, connection);
    });
    Sighting sighting;
    while (scan.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready) {
        for (const auto& entry : fs::directory_iterator("/proc")) {
            LookAt(entry.path(), std::to_string(silence.Port()), sighting);
        }
    }
    EXPECT_FALSE(scan.get().IsSucceed());
    EXPECT_TRUE(sighting.is_tool_seen);
    EXPECT_FALSE(sighting.is_secret_seen);
}

}  // namespace
}  // namespace ipmi_tests
