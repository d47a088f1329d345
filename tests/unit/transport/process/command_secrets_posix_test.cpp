// Secrets reach a program only as files of its own that nobody else can see.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/script_file.h"
#include "support/temporary_folder.h"
#include "transport/process/command_runner.h"

namespace Vantix::transport {
namespace {

using test_support::TemporaryFolder;
using test_support::WriteScript;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kSecret = "s3cret-invented-77";

class CommandSecretsTest : public testing::Test {
  protected:
    CommandOutcome Run(const std::string& body, const PassedTexts& texts) {
        Command command;
        command.program = WriteScript(folder_, "tool", body);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            command.arguments.push_back(PassedTextPath(i));
        }
        command.passed_texts = texts;
        return SystemCommandRunner().Run(command);
    }

    TemporaryFolder folder_;
};

TEST_F(CommandSecretsTest, PassedTextIsReadByItsName) {
    EXPECT_EQ(Run("cat \"$1\"", {kSecret}).output, kSecret);
}

TEST_F(CommandSecretsTest, SeveralTextsKeepTheirOrder) {
    EXPECT_EQ(Run("cat \"$2\"; cat \"$1\"; cat \"$3\"", {"one", "two", "three"}).output,
              "twoonethree");
}

TEST_F(CommandSecretsTest, TextCanBeReadTwice) {
    EXPECT_EQ(Run("cat \"$1\" \"$1\"", {"twice "}).output, "twice twice ");
}

TEST_F(CommandSecretsTest, EmptyTextIsAnEmptyFile) {
    const CommandOutcome outcome = Run("cat \"$1\" && echo read", {""});
    EXPECT_EQ(outcome.output, "read\n");
}

TEST_F(CommandSecretsTest, LongTextIsNotCut) {
    EXPECT_EQ(Run("cat \"$1\" | wc -c", {std::string(500000, 'x')}).output, "500000\n");
}

TEST_F(CommandSecretsTest, ProgramCannotChangeTheText) {
    EXPECT_EQ(Run("(echo more >>\"$1\") 2>/dev/null; cat \"$1\"", {kSecret}).output, kSecret);
}

TEST_F(CommandSecretsTest, SecretStandsInNoCommandLineAndNoEnvironmentOfTheMachine) {
    // The tool itself searches every process while it runs; the pattern comes from the passed file,
    // or the search would find itself.
    const CommandOutcome outcome =
        Run("for file in /proc/[0-9]*/cmdline /proc/[0-9]*/environ; do\n"
            "  grep -l -a -F -f \"$1\" \"$file\" 2>/dev/null\n"
            "done\n"
            "echo searched",
            {kSecret});
    EXPECT_EQ(outcome.output, "searched\n");
}

TEST_F(CommandSecretsTest, SecretStandsInNoFileName) {
    const CommandOutcome outcome = Run("ls -l /proc/$$/fd", {kSecret});
    EXPECT_THAT(outcome.output, HasSubstr("memfd"));
    EXPECT_THAT(outcome.output, Not(HasSubstr(kSecret)));
}

}  // namespace
}  // namespace Vantix::transport
