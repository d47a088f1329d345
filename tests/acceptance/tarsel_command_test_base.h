// A simulated BMC, an output folder and the built command, ready to be run against it.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "bmc_simulator/bmc_simulator.h"
#include "support/child_process_posix.h"
#include "support/temporary_folder.h"

namespace acceptance {

inline constexpr const char* kUser = "demo";
inline constexpr const char* kPassword = "Fake-Pass \"1\" \xC3\xA4/&";

/// How one run of the command ended.
struct Ended {
    int exit_code = -1;
    std::string output;
    std::string errors;
};

class TarselCommandTestBase : public testing::Test {
  protected:
    using Arguments = std::vector<std::string>;

    /// Options of a BMC with the scenario and this test's login.
    static simulators::BmcOptions Bmc(const std::string& scenario = "rack-server");

    /// Starts the simulated BMC of the test.
    void StartBmc(simulators::BmcOptions options = Bmc());

    [[nodiscard]] std::string Target() const;  ///< USER@HOST:PORT
    [[nodiscard]] std::string Port() const;
    [[nodiscard]] std::string Output(const std::string& file) const;

    /// "scan --bmc TARGET --output FOLDER" and more; nothing about trust.
    [[nodiscard]] test_support::ChildSetup UntrustingScan(const Arguments& more = {}) const;
    /// The same with the BMC's fingerprint and with the password in the environment.
    [[nodiscard]] test_support::ChildSetup Scan(const Arguments& more = {}) const;
    /// The two for another target than a BMC: "scan TARGET --output FOLDER" and more.
    [[nodiscard]] test_support::ChildSetup UntrustingScanOf(const Arguments& target,
                                                            const Arguments& more = {}) const;
    [[nodiscard]] test_support::ChildSetup ScanOf(const Arguments& target,
                                                  const Arguments& more = {}) const;
    /// The bare command with a minimal environment.
    [[nodiscard]] test_support::ChildSetup Command(const Arguments& arguments) const;

    static Ended Run(const test_support::ChildSetup& setup);

    test_support::TemporaryFolder folder_;
    std::unique_ptr<simulators::BmcSimulator> bmc_;
};

}  // namespace acceptance
