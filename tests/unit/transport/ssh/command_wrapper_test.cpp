#include "transport/ssh/command_wrapper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Vantix::transport {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kMark = "begin-0123";

TEST(CommandWrapperTest, MarksAreLongAndDiffer) {
    EXPECT_GE(RandomMark().size(), 24U);
    EXPECT_NE(RandomMark(), RandomMark());
}

TEST(CommandWrapperTest, PrefixStandsBeforeTheShellThatEndsTheGroup) {
    EXPECT_THAT(EndGroupCommand("123", "sudo -n"), StartsWith("sudo -n sh -c '"));
    EXPECT_THAT(
        EndGroupCommand("123", ""),
        AllOf(StartsWith("exec sh -c '"), HasSubstr("-TERM -123"), HasSubstr("-KILL -123")));
}

TEST(StreamStartTest, BytesBehindTheMarkPass) {
    StreamStart start(kMark);
    EXPECT_EQ(start.Pass("\nbegin-0123 4711\ndata"), "data");
    EXPECT_TRUE(start.HasBegun());
    EXPECT_EQ(start.Word(), "4711");
    EXPECT_EQ(start.NoiseBytes(), 0U);
    EXPECT_EQ(start.Pass("more\n"), "more\n");
}

TEST(StreamStartTest, NoiseBeforeTheMarkIsCounted) {
    StreamStart start(kMark);
    EXPECT_EQ(start.Pass("welcome\nbegin-0123\n"), "");
    EXPECT_EQ(start.Pass("\nbegin-0123 1\nx"), "x");
    EXPECT_EQ(start.NoiseBytes(), std::string("welcome\nbegin-0123\n").size());
}

TEST(StreamStartTest, MarkMayComeByteByByte) {
    StreamStart start(kMark);
    std::string passed;
    for (const char byte : std::string("noise\nbegin-0123 12\nout")) {
        passed += start.Pass(std::string(1, byte));
    }
    EXPECT_EQ(passed, "out");
    EXPECT_EQ(start.Word(), "12");
    EXPECT_EQ(start.NoiseBytes(), 5U);
}

TEST(StreamStartTest, EndlessNoiseIsCountedAndNotKept) {
    StreamStart start(kMark);
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(start.Pass(std::string(1000, 'x')), "");
    EXPECT_FALSE(start.HasBegun());
    EXPECT_LT(start.Noise().size(), 10000U);
    EXPECT_EQ(start.Pass("\nbegin-0123 1\nout"), "out");
    EXPECT_EQ(start.NoiseBytes(), 1000000U);
}

TEST(StreamStartTest, MarkInTheMiddleOfALineIsNone) {
    StreamStart start(kMark);
    EXPECT_EQ(start.Pass("echo begin-0123 $$\n"), "");
    EXPECT_FALSE(start.HasBegun());
}

TEST(StreamStartTest, BinaryDataPassUnchanged) {
    StreamStart start(kMark);
    const std::string data("\0\xff\n\r", 4);
    EXPECT_EQ(start.Pass("\nbegin-0123 1\n" + data), data);
}

}  // namespace
}  // namespace Vantix::transport
