#include "platform/log/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <locale>

#include "platform/log/log_settings.h"
#include "support/pattern.h"
#include "support/temporary_folder.h"

namespace Vantix {
namespace {

using test_support::HasPattern;
using test_support::TemporaryFolder;
using testing::HasSubstr;
using testing::IsEmpty;

class LogTest : public testing::Test {
  protected:
    ~LogTest() override { ShutdownLog(); }

    void Configure(int level) {
        LogSettings settings;
        settings.file = folder_.Path("test.log");
        settings.file_level = level;
        ASSERT_THAT(ConfigureLog(settings), IsEmpty());
    }
    [[nodiscard]] std::string Written() const { return folder_.Read("test.log"); }

    TemporaryFolder folder_;
};

// A value that counts how often somebody asked for its text.
struct CountedText {
    int* count;
};
std::ostream& operator<<(std::ostream& out, const CountedText& text) {
    if (out) ++*text.count;
    return out << "counted";
}

TEST_F(LogTest, RecordIsWrittenWhenTheObjectDies) {
    Configure(3);
    {
        Log log(3, "place", 5);
        log.Stream() << "number " << 42;
        EXPECT_THAT(Written(), IsEmpty());
    }
    EXPECT_THAT(Written(), HasSubstr("[3] place:5 number 42\n"));
}

TEST_F(LogTest, SwitchedOffLevelFormatsNothing) {
    Configure(3);
    int count = 0;
    Log(4, "place", 1).Stream() << CountedText{&count} << 1.5 << "text";
    EXPECT_EQ(count, 0);
    EXPECT_THAT(Written(), IsEmpty());
}

TEST_F(LogTest, FlagsSetOnASwitchedOffRecordDoNotReachALaterOne) {
    Configure(3);
    Log(4, "place", 1).Stream() << std::boolalpha << std::hex << true;
    Log(3, "place", 2).Stream() << true << " " << 255;
    EXPECT_THAT(Written(), HasSubstr("1 255\n"));
}

TEST_F(LogTest, BooleansAreDigitsUnlessAskedOtherwise) {
    Configure(3);
    Log(3, "place", 1).Stream() << true << false << std::boolalpha << true;
    EXPECT_THAT(Written(), HasSubstr("10true\n"));
}

struct GroupingDigits : std::numpunct<char> {
    [[nodiscard]] char do_thousands_sep() const override { return ','; }
    [[nodiscard]] std::string do_grouping() const override { return "\3"; }
};

TEST_F(LogTest, NumbersDoNotFollowTheGlobalLocale) {
    Configure(3);
    const std::locale former =
        std::locale::global(std::locale(std::locale::classic(), new GroupingDigits));
    Log(3, "place", 1).Stream() << 1234567;
    std::locale::global(former);
    EXPECT_THAT(Written(), HasSubstr("1234567\n"));
}

TEST_F(LogTest, RecordsOfManyLinesStayOneRecord) {
    Configure(3);
    Log(3, "place", 1).Stream() << "scan options are\n        : bay_id = 0";
    EXPECT_THAT(Written(), HasSubstr("scan options are\n            : bay_id = 0\n"));
}

TEST_F(LogTest, TraceNamesStepAndCode) {
    Configure(3);
    AddDetailTimeDebugLog(3, "place", 9, "[B]", 15, 0, "");
    EXPECT_THAT(Written(), HasSubstr("[3] place:9 [B] step 15 code 0\n"));
}

TEST_F(LogTest, TraceEndTellsTheTimeSinceItsBegin) {
    Configure(3);
    AddDetailTimeDebugLog(3, "place", 1, "[B]", 21, 0, "");
    AddDetailTimeDebugLog(3, "place", 2, "[E]", 21, 1747, "inventory");
    EXPECT_THAT(Written(), HasPattern("\\[E\\] step 21 code 1747 after [0-9]+ ms inventory\n"));
}

TEST_F(LogTest, TraceEndWithoutBeginTellsNoTime) {
    Configure(3);
    AddDetailTimeDebugLog(3, "place", 2, "[E]", 99, 0, "");
    EXPECT_THAT(Written(), HasSubstr("[E] step 99 code 0\n"));
}

TEST_F(LogTest, TraceOfASwitchedOffLevelIsNotWritten) {
    Configure(2);
    AddDetailTimeDebugLog(3, "place", 1, "[B]", 15, 0, "");
    EXPECT_THAT(Written(), IsEmpty());
}

}  // namespace
}  // namespace Vantix
