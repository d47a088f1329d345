#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "tarsel/credentials.h"
#include "tarsel/terminal.h"

namespace tarsel {
namespace {

constexpr const char* kVariable = "TARSEL_TEST_VARIABLE";
constexpr const wchar_t* kWideVariable = L"TARSEL_TEST_VARIABLE";
constexpr int kStandardOutput = 1;

TEST(TerminalTest, VariableIsTakenOutOfTheEnvironment) {
    _putenv_s(kVariable, "value");
    std::string value;
    EXPECT_TRUE(TakeEnvironmentVariable(kVariable, value));
    EXPECT_EQ(value, "value");
    EXPECT_EQ(GetEnvironmentVariableW(kWideVariable, nullptr, 0), 0U);
    EXPECT_EQ(std::getenv(kVariable), nullptr);
}

TEST(TerminalTest, VariableMayHoldAnyText) {
    SetEnvironmentVariableW(kWideVariable, L"\u00fc\u4e2d");
    std::string value;
    EXPECT_TRUE(TakeEnvironmentVariable(kVariable, value));
    EXPECT_EQ(value, "\xC3\xBC\xE4\xB8\xAD");
}

TEST(TerminalTest, MissingAndEmptyVariablesAreNone) {
    std::string value;
    EXPECT_FALSE(TakeEnvironmentVariable("TARSEL_TEST_MISSING", value));
    SetEnvironmentVariableW(kWideVariable, L"");
    EXPECT_FALSE(TakeEnvironmentVariable(kVariable, value));
}

TEST(TerminalTest, WipedTextIsEmpty) {
    std::string text = "FakePass1";
    WipeText(text);
    EXPECT_TRUE(text.empty());
}

TEST(TerminalTest, RedirectedErrorOutputIsNotInteractive) {
    testing::internal::CaptureStderr();
    const bool is_interactive = IsErrorOutputInteractive();
    testing::internal::GetCapturedStderr();
    EXPECT_FALSE(is_interactive);
}

TEST(TerminalTest, StandardOutputTakesAWholeTextWithoutAddedLetters) {
    std::string text;
    for (int line = 0; line < 20000; ++line) text += "a line\n";
    testing::internal::CaptureStdout();
    const WriteState state = WriteStandardOutput(text);
    EXPECT_EQ(testing::internal::GetCapturedStdout().size(), text.size());
    EXPECT_EQ(state, WriteState::kOk);
}

class Pipe {
  public:
    Pipe() { EXPECT_EQ(_pipe(ends_, 4096, _O_BINARY), 0); }
    ~Pipe() {
        CloseReading();
        CloseWriting();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    [[nodiscard]] int Reading() const { return ends_[0]; }
    [[nodiscard]] int Writing() const { return ends_[1]; }
    void CloseReading() { Close(ends_[0]); }
    void CloseWriting() { Close(ends_[1]); }

  private:
    static void Close(int& descriptor) {
        if (descriptor >= 0) _close(descriptor);
        descriptor = -1;
    }
    int ends_[2] = {-1, -1};
};

TEST(TerminalDeathTest, GoneReaderIsNoFailure) {
    Pipe pipe;
    pipe.CloseReading();
    EXPECT_EXIT(
        {
            Pipe gone;
            gone.CloseReading();
            _dup2(gone.Writing(), kStandardOutput);
            std::_Exit(static_cast<int>(WriteStandardOutput("text")));
        },
        testing::ExitedWithCode(static_cast<int>(WriteState::kReaderGone)), "");
}

TEST(TerminalDeathTest, ClosedStandardOutputIsAFailure) {
    EXPECT_EXIT(
        {
            _close(kStandardOutput);
            OccupyStandardDescriptors();
            std::_Exit(static_cast<int>(WriteStandardOutput("text")));
        },
        testing::ExitedWithCode(static_cast<int>(WriteState::kFailed)), "");
}

TEST(DescriptorTest, GivesItsFirstLineAndKeepsTheRest) {
    Pipe pipe;
    ASSERT_EQ(_write(pipe.Writing(), "FakePass1\r\nrest", 15), 15);
    ScanArguments arguments;
    arguments.password.descriptor = pipe.Reading();
    EXPECT_EQ(FindPassword(arguments, [] { return false; }).password, "FakePass1");
    char rest[8] = {};
    EXPECT_EQ(_read(pipe.Reading(), rest, sizeof rest), 4);
}

TEST(DescriptorTest, ClosedOneGivesNoLine) {
    Pipe pipe;
    pipe.CloseWriting();
    std::string line;
    EXPECT_EQ(ReadDescriptorLine(pipe.Reading(), line), ReadState::kEmpty);
}

TEST(DescriptorTest, OneThatIsNotOpenIsMissing) {
    std::string line;
    EXPECT_EQ(ReadDescriptorLine(987, line), ReadState::kMissing);
}

}  // namespace
}  // namespace tarsel
