// The standard output carries the two tables and nothing else, whatever goes on around them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "acceptance/tarsel_command_test_base.h"

namespace acceptance {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ScanOutputTest : public TarselCommandTestBase {
  protected:
    std::string OutputWith(const Arguments& more) { return Run(Scan(more)).output; }
};

TEST_F(ScanOutputTest, TablesBeginAndEndTheOutput) {
    StartBmc();
    const Ended ended = Run(Scan());
    EXPECT_THAT(ended.output, testing::StartsWith("Platform Information\n"));
    EXPECT_THAT(ended.output, Not(HasSubstr("tarsel:")));
    EXPECT_THAT(ended.output, Not(HasSubstr("Sources of")));
    EXPECT_THAT(ended.output, Not(HasSubstr("\x1B")));
}

TEST_F(ScanOutputTest, VerbosityDoesNotChangeTheOutput) {
    StartBmc();
    const std::string plain = OutputWith({});
    EXPECT_THAT(plain, Not(IsEmpty()));
    EXPECT_EQ(OutputWith({"-v"}), plain);
    EXPECT_EQ(OutputWith({"-vv"}), plain);
    EXPECT_EQ(OutputWith({"--quiet"}), plain);
}

TEST_F(ScanOutputTest, SourcesAreTheLastLinesOfTheErrorOutput) {
    StartBmc();
    const Ended ended = Run(Scan());
    EXPECT_THAT(ended.errors, testing::StartsWith("Sources of 127.0.0.1"));
    EXPECT_THAT(ended.errors, testing::ContainsRegex("firmware inventory +complete +40 read\n"));
}

TEST_F(ScanOutputTest, QuietCompleteScanHasNothingElseToSay) {
    StartBmc();
    EXPECT_THAT(Run(Scan({"--quiet"})).errors, IsEmpty());
}

TEST_F(ScanOutputTest, QuietFailureIsOneSentence) {
    StartBmc();
    const auto setup = Scan({"--quiet", "--deadline", "1"});  // no time for repetitions
    bmc_->Stop();
    const Ended ended = Run(setup);
    EXPECT_THAT(ended.errors, testing::StartsWith("tarsel: "));
    EXPECT_EQ(std::count(ended.errors.begin(), ended.errors.end(), '\n'), 1) << ended.errors;
}

TEST_F(ScanOutputTest, VerboseRunShowsTheLog) {
    StartBmc();
    const Ended ended = Run(Scan({"-v"}));
    EXPECT_THAT(ended.errors, HasSubstr("Start BMC inventorying..."));
    EXPECT_THAT(ended.errors, Not(HasSubstr("[Agentless Software Identity Information]")));
}

TEST_F(ScanOutputTest, ReaderThatWentAwayIsNoError) {
    StartBmc();
    auto setup = Scan();
    setup.has_closed_output_pipe = true;
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_THAT(ended.errors, Not(HasSubstr("tarsel:")));
    EXPECT_THAT(Output("Tarsel-update-scan.xml"), HasSubstr("<SOFTWAREID>"));
}

TEST_F(ScanOutputTest, ClosedStandardOutputIsAFailureAndGetsIntoNoFile) {
    StartBmc();
    auto setup = Scan();
    const Arguments shell = {"/bin/sh", "-c", R"(exec "$@" >&-)", "sh"};
    setup.arguments.insert(setup.arguments.begin(), shell.begin(), shell.end());
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_THAT(ended.errors, HasSubstr("The tables cannot be written to the standard output"));
    EXPECT_THAT(Output("tarsel.log"), Not(HasSubstr("Updatable Unit")));
}

TEST_F(ScanOutputTest, LocaleChangesNothing) {
    StartBmc();
    const std::string plain = OutputWith({});
    const std::string scan_file = Output("Tarsel-update-scan.xml");
    for (const char* const locale : {"C", "de_DE.ISO-8859-1", "de_DE.UTF-8", "no-such-locale"}) {
        auto setup = Scan();
        setup.environment["LC_ALL"] = locale;
        const Ended ended = Run(setup);
        EXPECT_EQ(ended.exit_code, 0) << locale;
        EXPECT_EQ(ended.output, plain) << locale;
        EXPECT_EQ(Output("Tarsel-update-scan.xml"), scan_file) << locale;
    }
}

TEST_F(ScanOutputTest, DeadProxyInTheEnvironmentIsIgnored) {
    StartBmc();
    auto setup = Scan();
    for (const char* const name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy"}) {
        setup.environment[name] = "http://127.0.0.1:1";
    }
    const Ended ended = Run(setup);
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
}

}  // namespace
}  // namespace acceptance
