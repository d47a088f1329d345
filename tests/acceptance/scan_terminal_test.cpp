// The command on a terminal: the password prompt and the progress line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "acceptance/tarsel_command_test_base.h"

namespace acceptance {
namespace {

using test_support::ChildProcess;
using test_support::ChildSetup;
using testing::HasSubstr;
using testing::Not;

class ScanTerminalTest : public TarselCommandTestBase {
  protected:
    [[nodiscard]] ChildSetup OnTerminal(ChildSetup setup, const std::string& type = "xterm") const {
        setup.has_terminal = true;
        setup.environment["TERM"] = type;
        return setup;
    }

    [[nodiscard]] ChildSetup ScanThatAsks(const Arguments& more = {}) const {
        ChildSetup setup = OnTerminal(Scan(more));
        setup.environment.erase("TARSEL_PASSWORD");
        return setup;
    }
};

TEST_F(ScanTerminalTest, PasswordIsAskedForAndNotShown) {
    StartBmc();
    ChildProcess scan(ScanThatAsks());
    ASSERT_TRUE(scan.WaitForErrors("Password for " + Target() + ": "));
    scan.Type(std::string(kPassword) + "\n");
    EXPECT_EQ(scan.Wait(), 0) << scan.Errors();
    EXPECT_THAT(scan.Errors(), Not(HasSubstr("Fake-Pass")));
    EXPECT_THAT(scan.Output(), testing::StartsWith("Platform Information"));
}

TEST_F(ScanTerminalTest, InterruptedPromptEndsWithoutAScan) {
    StartBmc();
    ChildProcess scan(ScanThatAsks());
    ASSERT_TRUE(scan.WaitForErrors("Password for "));
    scan.Type("\x03");
    EXPECT_EQ(scan.Wait(), 130) << scan.Errors();
    EXPECT_EQ(bmc_->Counts().connections, 0);
}

TEST_F(ScanTerminalTest, TerminalShowsLettersAgainAfterAnInterruptedPrompt) {
    StartBmc();
    ChildProcess scan(ScanThatAsks());
    ASSERT_TRUE(scan.WaitForErrors("Password for "));
    EXPECT_FALSE(scan.TerminalEchoes());
    scan.Type("\x03");
    ASSERT_TRUE(scan.WaitForErrors("Interrupted"));
    EXPECT_TRUE(scan.TerminalEchoes());
    EXPECT_EQ(scan.Wait(), 130);
}

TEST_F(ScanTerminalTest, ClosedPromptEndsWithoutAScan) {
    StartBmc();
    ChildProcess scan(ScanThatAsks());
    ASSERT_TRUE(scan.WaitForErrors("Password for "));
    scan.Type("\x04");
    EXPECT_EQ(scan.Wait(), 2) << scan.Errors();
    EXPECT_EQ(bmc_->Counts().connections, 0);
}

TEST_F(ScanTerminalTest, ProgressIsShownAndWipedAgain) {
    StartBmc();
    ChildProcess scan(OnTerminal(Scan()));
    EXPECT_EQ(scan.Wait(), 0) << scan.Errors();
    EXPECT_THAT(scan.Errors(), HasSubstr("Scanning... "));
    EXPECT_THAT(scan.Errors(), HasSubstr("\x1B[KSources of"));
    EXPECT_THAT(scan.Output(), Not(HasSubstr("Scanning")));
}

TEST_F(ScanTerminalTest, EstimateComesFromAnEarlierScan) {
    std::filesystem::create_directories(folder_.Path("home/.local/state/tarsel"));
    folder_.Write("home/.local/state/tarsel/durations.txt", "77 None_None/Example Rack 100\n");
    StartBmc();
    ChildProcess scan(OnTerminal(Scan()));
    EXPECT_EQ(scan.Wait(), 0) << scan.Errors();
    EXPECT_THAT(scan.Errors(), HasSubstr("of about 77 s"));
}

TEST_F(ScanTerminalTest, QuietScanShowsNoProgress) {
    StartBmc();
    ChildProcess scan(OnTerminal(Scan({"--quiet"})));
    EXPECT_EQ(scan.Wait(), 0);
    EXPECT_EQ(scan.Errors(), "");
}

TEST_F(ScanTerminalTest, TerminalWithoutCursorCommandsShowsNoProgress) {
    StartBmc();
    ChildProcess scan(OnTerminal(Scan(), "dumb"));
    EXPECT_EQ(scan.Wait(), 0);
    EXPECT_THAT(scan.Errors(), Not(HasSubstr("Scanning...")));
}

TEST_F(ScanTerminalTest, VerboseScanShowsTheLogInsteadOfTheProgressLine) {
    StartBmc();
    ChildProcess scan(OnTerminal(Scan({"-v"})));
    EXPECT_EQ(scan.Wait(), 0);
    EXPECT_THAT(scan.Errors(), Not(HasSubstr("\x1B[K")));
}

// A host that does not tell its operating system is asked again a minute later; nothing here waits
// for that minute.
class ScanWaitTest : public ScanTerminalTest {
  protected:
    void StartForgetfulHost() {
        auto options = Bmc("esxi-host");
        simulators::FaultRule rule;
        rule.body_contains = "CIM_OperatingSystem\"";
        rule.fault.kind = simulators::Fault::Kind::kStatus;
        rule.fault.status = 500;
        options.faults = {rule};
        StartBmc(options);
    }

    [[nodiscard]] ChildSetup HostScan() const { return OnTerminal(ScanOf({"--esxi", Target()})); }
};

TEST_F(ScanWaitTest, LongWaitIsNamedAndItsSecondsKeepRunning) {
    StartForgetfulHost();
    ChildProcess scan(HostScan());
    ASSERT_TRUE(scan.WaitForErrors("waiting 60 seconds (1 of 3)")) << scan.Errors();
    EXPECT_TRUE(scan.WaitForErrors("Scanning... 2 s, no answer")) << scan.Errors();
}

TEST_F(ScanWaitTest, InterruptedWaitSaysHowToEndAtOnce) {
    StartForgetfulHost();
    ChildProcess scan(HostScan());
    ASSERT_TRUE(scan.WaitForErrors("waiting 60 seconds (1 of 3)")) << scan.Errors();
    scan.Type("\x03");
    ASSERT_TRUE(scan.WaitForErrors("once more ends at once")) << scan.Errors();
    scan.Type("\x03");
    EXPECT_EQ(scan.Wait(), 1000 + SIGINT);
}

}  // namespace
}  // namespace acceptance
