// Secrets reach a program only as files of the user's own that last as long as the program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "common/files/file_path.h"
#include "transport/process/command_runner.h"

namespace Vantix::transport {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kSecret = "s3cret-invented-77";

CommandOutcome RunTool(const std::vector<std::string>& arguments, const PassedTexts& texts) {
    Command command;
    command.program = TARSEL_TEST_TOOL;
    command.arguments = arguments;
    command.passed_texts = texts;
    return SystemCommandRunner().Run(command);
}

TEST(CommandSecretsTest, PassedTextIsReadByItsName) {
    EXPECT_EQ(RunTool({"file", PassedTextPath(0)}, {kSecret}).output, kSecret);
}

TEST(CommandSecretsTest, SeveralTextsKeepTheirOrder) {
    EXPECT_EQ(
        RunTool({"file", PassedTextPath(1), "file", PassedTextPath(0), "file", PassedTextPath(2)},
                {"one", "two", "three"})
            .output,
        "twoonethree");
}

TEST(CommandSecretsTest, TextCanBeReadTwice) {
    EXPECT_EQ(RunTool({"file", PassedTextPath(0), "file", PassedTextPath(0)}, {"twice "}).output,
              "twice twice ");
}

TEST(CommandSecretsTest, EmptyTextIsAnEmptyFile) {
    EXPECT_EQ(RunTool({"file", PassedTextPath(0), "out", "read"}, {""}).output, "read");
}

TEST(CommandSecretsTest, LongTextIsNotCut) {
    const std::string text(500000, 'x');
    EXPECT_EQ(RunTool({"file", PassedTextPath(0)}, {text}).output, text);
}

TEST(CommandSecretsTest, ProgramCannotChangeTheText) {
    EXPECT_EQ(
        RunTool({"append-to", PassedTextPath(0), "file", PassedTextPath(0)}, {kSecret}).output,
        kSecret);
}

TEST(CommandSecretsTest, SecretStandsInNoCommandLineAndNoEnvironment) {
    const CommandOutcome outcome =
        RunTool({"command-line", "variables", "words", PassedTextPath(0)}, {kSecret});
    EXPECT_EQ(outcome.exit_status, 0);
    EXPECT_THAT(outcome.output, Not(HasSubstr(kSecret)));
    EXPECT_THAT(outcome.output, EndsWith(".txt>"));
}

TEST(CommandSecretsTest, FileIsGoneWithTheProgram) {
    const std::string word = RunTool({"words", PassedTextPath(0)}, {kSecret}).output;
    ASSERT_GT(word.size(), 2U);
    EXPECT_FALSE(std::filesystem::exists(FilePath(word.substr(1, word.size() - 2))));
}

TEST(CommandSecretsTest, FileOfAProgramThatWasEndedIsGone) {
    Command command;
    command.program = TARSEL_TEST_TOOL;
    command.arguments = {"out", PassedTextPath(0), "sleep", "600000"};
    command.passed_texts = {kSecret};
    command.time_limit = std::chrono::milliseconds(1000);
    const CommandOutcome outcome = SystemCommandRunner().Run(command);
    EXPECT_EQ(outcome.end, CommandEnd::kTimedOut);
    ASSERT_FALSE(outcome.output.empty());
    EXPECT_FALSE(std::filesystem::exists(FilePath(outcome.output)));
}

}  // namespace
}  // namespace Vantix::transport
