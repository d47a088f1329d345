// Passwords and tokens: every way in, and no way out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "acceptance/tarsel_command_test_base.h"

namespace acceptance {
namespace {

using simulators::Fault;
using simulators::FaultRule;
using test_support::ChildProcess;
using test_support::TemporaryFolder;
using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

class ScanSecretsTest : public TarselCommandTestBase {
  protected:
    // A scan with a pin and without any password yet.
    [[nodiscard]] test_support::ChildSetup ScanWithoutPassword(const Arguments& more) const {
        auto setup = Scan(more);
        setup.environment.erase("TARSEL_PASSWORD");
        return setup;
    }

    // What the BMC handed out or was handed and nobody else may see.
    [[nodiscard]] std::vector<std::string> Secrets() const {
        std::vector<std::string> secrets = {kPassword, "Fake-Pass \\\"1\\\" \xC3\xA4/&",
                                            "Fake-Pass%20%221%22%20%C3%A4%2F%26"};
        for (const auto& request : bmc_->Counts().log) {
            const std::string* const token =
                simulators::FindHeader(request.headers, "x-auth-token");
            const std::string* const basic =
                simulators::FindHeader(request.headers, "authorization");
            if (token != nullptr) secrets.push_back(*token);
            if (basic != nullptr) secrets.push_back(basic->substr(basic->find(' ') + 1));
        }
        return secrets;
    }

    void ExpectNoSecretIn(const std::string& text, const std::string& place) const {
        for (const std::string& secret : Secrets()) {
            EXPECT_THAT(text, Not(HasSubstr(secret))) << place;
        }
    }

    void ExpectNoSecretAnywhere(const Ended& ended) const {
        ExpectNoSecretIn(ended.output, "standard output");
        ExpectNoSecretIn(ended.errors, "standard error output");
        for (const auto& file : std::filesystem::recursive_directory_iterator(folder_.Path(""))) {
            if (!file.is_regular_file() || file.path().filename() == "secret") continue;
            ExpectNoSecretIn(TemporaryFolder::ReadFile(file.path().string()), file.path().string());
        }
    }
};

TEST_F(ScanSecretsTest, NoSecretIsInAnyOutputAtTheHighestVerbosity) {
    StartBmc();
    const Ended ended = Run(Scan({"-vv"}));
    ASSERT_EQ(ended.exit_code, 0) << ended.errors;
    ASSERT_GT(Secrets().size(), 3U) << "the BMC saw no token";
    ExpectNoSecretAnywhere(ended);
}

TEST_F(ScanSecretsTest, NoSecretOfABasicLoginIsInAnyOutput) {
    StartBmc();
    const Ended ended = Run(Scan({"-vv", "--auth", "basic"}));
    ASSERT_EQ(ended.exit_code, 0) << ended.errors;
    ASSERT_GT(Secrets().size(), 3U) << "the BMC saw no credentials";
    ExpectNoSecretAnywhere(ended);
}

TEST_F(ScanSecretsTest, PeerThatQuotesThePasswordCannotPublishIt) {
    auto options = Bmc();
    FaultRule rule;
    rule.method = "POST";
    rule.fault.kind = Fault::Kind::kBody;
    rule.fault.status = 400;
    rule.fault.body = std::string(R"({"error":{"message":"you sent )") + R"(Fake-Pass \"1\" )" +
                      "\xC3\xA4/&" + R"("}})";
    options.faults = {rule};
    StartBmc(options);
    const Ended ended = Run(Scan({"-vv", "--auth", "session"}));
    EXPECT_NE(ended.exit_code, 0);
    ExpectNoSecretAnywhere(ended);
}

TEST_F(ScanSecretsTest, RunningProcessShowsNoSecretToOthers) {
    auto options = Bmc();
    FaultRule rule;
    rule.target_contains = "FirmwareInventory";
    rule.fault.kind = Fault::Kind::kSilent;
    options.faults = {rule};
    StartBmc(options);
    ChildProcess scan(Scan({"-vv"}));
    ASSERT_TRUE(scan.WaitForErrors("Start BMC inventorying...")) << scan.Errors();
    const std::string process = "/proc/" + std::to_string(scan.Id());
    const std::string command_line = TemporaryFolder::ReadFile(process + "/cmdline");
    EXPECT_THAT(command_line, HasSubstr("--bmc"));
    ExpectNoSecretIn(command_line, "command line");
    const std::string environment = TemporaryFolder::ReadFile(process + "/environ");
    EXPECT_THAT(environment, HasSubstr("HOME="));
    ExpectNoSecretIn(environment, "environment");
}

TEST_F(ScanSecretsTest, PasswordComesFromAPrivateFile) {
    StartBmc();
    const std::string file = folder_.Write("secret", std::string(kPassword) + "\n");
    ASSERT_EQ(chmod(file.c_str(), 0600), 0);
    const Ended ended = Run(ScanWithoutPassword({"-vv", "--password-file", file}));
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    ExpectNoSecretAnywhere(ended);
}

TEST_F(ScanSecretsTest, FileThatOthersCanReadIsRefusedBeforeAnyRequest) {
    StartBmc();
    const std::string file = folder_.Write("secret", std::string(kPassword) + "\n");
    ASSERT_EQ(chmod(file.c_str(), 0644), 0);
    const Ended ended = Run(ScanWithoutPassword({"--password-file", file}));
    EXPECT_EQ(ended.exit_code, 2);
    // What closes a file depends on the command's system.
    EXPECT_THAT(ended.errors, AnyOf(HasSubstr("chmod 600"), HasSubstr("icacls")));
    EXPECT_EQ(bmc_->Counts().connections, 0);
}

TEST_F(ScanSecretsTest, PasswordComesFromTheStandardInput) {
    StartBmc();
    auto setup = ScanWithoutPassword({"--password-stdin"});
    setup.input = std::string(kPassword) + "\n";
    EXPECT_EQ(Run(setup).exit_code, 0);
}

TEST_F(ScanSecretsTest, PasswordComesFromADescriptor) {
    StartBmc();
    auto setup = ScanWithoutPassword({"--password-fd", "0"});
    setup.input = kPassword;
    EXPECT_EQ(Run(setup).exit_code, 0);
}

TEST_F(ScanSecretsTest, RefusedPasswordArgumentIsNotRepeated) {
    StartBmc();
    const Ended ended = Run(ScanWithoutPassword({"--password", kPassword}));
    EXPECT_EQ(ended.exit_code, 2);
    EXPECT_THAT(ended.errors, HasSubstr("TARSEL_PASSWORD"));
    ExpectNoSecretIn(ended.errors, "standard error output");
    EXPECT_EQ(bmc_->Counts().connections, 0);
}

}  // namespace
}  // namespace acceptance
