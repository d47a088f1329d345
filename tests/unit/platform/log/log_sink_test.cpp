#include "platform/log/log_sink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/log/log_record.h"
#include "platform/log/log_settings.h"
#include "support/temporary_folder.h"

namespace Vantix {
namespace {

using test_support::TemporaryFolder;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class LogSinkTest : public testing::Test {
  protected:
    ~LogSinkTest() override { ShutdownLog(); }

    void Configure(int file_level, std::size_t max_file_bytes = 1 << 20) {
        LogSettings settings;
        settings.file = folder_.Path("test.log");
        settings.file_level = file_level;
        settings.max_file_bytes = max_file_bytes;
        settings.max_files = 2;
        ASSERT_THAT(ConfigureLog(settings), IsEmpty());
    }

    TemporaryFolder folder_;
};

TEST_F(LogSinkTest, NothingIsWantedUntilConfigured) {
    EXPECT_FALSE(IsLogLevelWanted(1));
}

TEST_F(LogSinkTest, RecordIsInTheFileAtOnce) {
    Configure(3);
    WriteLogRecord(1, "source", 7, "first record");
    EXPECT_THAT(folder_.Read("test.log"), HasSubstr(" [1] source:7 first record\n"));
}

TEST_F(LogSinkTest, LevelsBeyondTheChosenOneAreLeftOut) {
    Configure(2);
    EXPECT_TRUE(IsLogLevelWanted(2));
    EXPECT_FALSE(IsLogLevelWanted(3));
    WriteLogRecord(3, "source", 1, "too detailed");
    EXPECT_THAT(folder_.Read("test.log"), IsEmpty());
}

TEST_F(LogSinkTest, FullFileIsRotatedAndTheOldestDropped) {
    Configure(3, 1024);
    for (int i = 0; i < 40; ++i) WriteLogRecord(1, "source", i, std::string(200, 'x'));
    EXPECT_THAT(folder_.Read("test.1.log"), Not(IsEmpty()));
    EXPECT_THAT(folder_.Read("test.2.log"), Not(IsEmpty()));
    EXPECT_THAT(folder_.Read("test.3.log"), IsEmpty());
    EXPECT_LE(folder_.Read("test.log").size(), 1024U);
}

TEST_F(LogSinkTest, SecretsAreMaskedInTheFile) {
    Configure(3);
    AddLogSecret("FakePass1");
    WriteLogRecord(1, "source", 1, "sent FakePass1");
    EXPECT_THAT(folder_.Read("test.log"), HasSubstr("sent ******"));
}

TEST_F(LogSinkTest, SecretAcrossTheCutIsMaskedWhole) {
    Configure(3);
    AddLogSecret("FakePass1");
    WriteLogRecord(1, "source", 1, std::string(kLongestLogRecord - 4, 'x') + "FakePass1 tail");
    EXPECT_THAT(folder_.Read("test.log"), Not(HasSubstr("Fake")));
}

TEST_F(LogSinkTest, ConsoleTakesItsOwnLevel) {
    LogSettings settings;
    settings.console_level = 1;
    testing::internal::CaptureStderr();
    EXPECT_THAT(ConfigureLog(settings), IsEmpty());
    WriteLogRecord(1, "source", 1, "shown");
    WriteLogRecord(2, "source", 1, "hidden");
    const std::string console = testing::internal::GetCapturedStderr();
    EXPECT_THAT(console, HasSubstr("shown\n"));
    EXPECT_THAT(console, Not(HasSubstr("hidden")));
}

TEST_F(LogSinkTest, UnwritableFileIsToldInOneSentence) {
    LogSettings settings;
    settings.file = folder_.Path("no/such/folder/test.log");
    EXPECT_EQ(ConfigureLog(settings), "The log file " + settings.file +
                                          " cannot be written; check that its folder exists and "
                                          "is writable.");
    EXPECT_FALSE(IsLogLevelWanted(1));
}

TEST_F(LogSinkTest, ConsoleStillWorksWhenTheFileDoesNot) {
    LogSettings settings;
    settings.file = folder_.Path("no/such/folder/test.log");
    settings.console_level = 2;
    testing::internal::CaptureStderr();
    EXPECT_THAT(ConfigureLog(settings), Not(IsEmpty()));
    WriteLogRecord(2, "source", 1, "still here");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("still here"));
}

TEST_F(LogSinkTest, NothingIsWrittenAfterShutdown) {
    Configure(4);
    ShutdownLog();
    EXPECT_FALSE(IsLogLevelWanted(1));
    WriteLogRecord(1, "source", 1, "too late");
    EXPECT_THAT(folder_.Read("test.log"), IsEmpty());
}

}  // namespace
}  // namespace Vantix
