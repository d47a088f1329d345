// Log files as a POSIX system has them: with modes, and on devices.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/log/log_record.h"
#include "platform/log/log_settings.h"
#include "platform/log/log_sink.h"
#include "support/temporary_folder.h"

namespace Vantix {
namespace {

using test_support::TemporaryFolder;
using testing::IsEmpty;

class LogFileTest : public testing::Test {
  protected:
    ~LogFileTest() override { ShutdownLog(); }

    void Configure(int file_level, std::size_t max_file_bytes = 1 << 20) {
        LogSettings settings;
        settings.file = folder_.Path("test.log");
        settings.file_level = file_level;
        settings.max_file_bytes = max_file_bytes;
        settings.max_files = 2;
        ASSERT_THAT(ConfigureLog(settings), IsEmpty());
    }

    [[nodiscard]] mode_t ModeOf(const std::string& name) const {
        struct stat status {};
        return stat(folder_.Path(name).c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
    }

    TemporaryFolder folder_;
};

TEST_F(LogFileTest, FileIsForItsOwnerOnly) {
    Configure(3);
    EXPECT_EQ(ModeOf("test.log"), 0600U);
}

TEST_F(LogFileTest, ExistingFileLosesItsOpenMode) {
    ASSERT_EQ(chmod(folder_.Write("test.log", "old\n").c_str(), 0644), 0);
    Configure(3);
    WriteLogRecord(1, "source", 1, "new");
    EXPECT_EQ(ModeOf("test.log"), 0600U);
    EXPECT_THAT(folder_.Read("test.log"), testing::StartsWith("old\n"));
}

TEST_F(LogFileTest, RotatedFilesAreForTheirOwnerOnly) {
    Configure(3, 1024);
    for (int i = 0; i < 40; ++i) WriteLogRecord(1, "source", i, std::string(200, 'x'));
    EXPECT_EQ(ModeOf("test.log"), 0600U);
    EXPECT_EQ(ModeOf("test.1.log"), 0600U);
}

TEST_F(LogFileTest, FullDiskIsSurvived) {
    LogSettings settings;
    settings.file = "/dev/full";
    static_cast<void>(ConfigureLog(settings));
    EXPECT_NO_THROW(WriteLogRecord(1, "source", 1, "lost"));
}

}  // namespace
}  // namespace Vantix
