#include "platform/remote_command/remote_summary.h"

#include <gtest/gtest.h>

#include "support/temporary_folder.h"
#include "tarsel/common_result.h"

namespace Vantix::remote {
namespace {

using VantixConnection::SourceState;
using VantixConnection::SourceStatus;

class RemoteSummaryTest : public testing::Test {
  protected:
    static tarsel::CommonResult Written(int exit_code) {
        tarsel::CommonResult result;
        result.exit_code = exit_code;
        SourceStatus& disks = result.sources.emplace_back();
        disks.source = "disks";
        disks.state = SourceState::kPartial;
        disks.items_read = 3;
        disks.items_failed = 1;
        disks.detail = "sdb <gives> no answer";
        return result;
    }

    [[nodiscard]] std::vector<SourceStatus> Read(const std::string& xml) const {
        return ReadSources(folder_.Write("common_result.xml", xml));
    }

    test_support::TemporaryFolder folder_;
};

TEST_F(RemoteSummaryTest, SourceIsReadWhole) {
    const auto sources = Read(tarsel::CommonResultXml(Written(3)));
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_EQ(sources[0].source, "disks");
    EXPECT_EQ(sources[0].state, SourceState::kPartial);
    EXPECT_EQ(sources[0].items_read, 3);
    EXPECT_EQ(sources[0].items_failed, 1);
    EXPECT_EQ(sources[0].detail, "sdb <gives> no answer");
}

TEST_F(RemoteSummaryTest, GapOfAPartialRunIsAGapHere) {
    EXPECT_TRUE(IsGap(Read(tarsel::CommonResultXml(Written(3)))[0]));
}

TEST_F(RemoteSummaryTest, GapOfACompleteRunIsNoGapHere) {
    EXPECT_FALSE(IsGap(Read(tarsel::CommonResultXml(Written(0)))[0]));
}

TEST_F(RemoteSummaryTest, EveryStateIsKnown) {
    for (const SourceState state :
         {SourceState::kComplete, SourceState::kPartial, SourceState::kUnsupported,
          SourceState::kDenied, SourceState::kTimeout, SourceState::kFailed,
          SourceState::kNotTried}) {
        tarsel::CommonResult written = Written(3);
        written.sources[0].state = state;
        EXPECT_EQ(Read(tarsel::CommonResultXml(written))[0].state, state);
    }
}

TEST_F(RemoteSummaryTest, UnknownStateCountsAsFailed) {
    const auto sources = Read(
        "<RESULT><SOURCES><SOURCE><NAME>x</NAME><STATE>odd</STATE></SOURCE></SOURCES></RESULT>");
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_EQ(sources[0].state, SourceState::kFailed);
}

TEST_F(RemoteSummaryTest, HostileTextsAndNumbersAreTamed) {
    const auto sources = Read("<RESULT><SOURCES><SOURCE><NAME>a\x1B[31m" + std::string(5000, 'b') +
                              "</NAME><READ>-5</READ><FAILED>99999999999999</FAILED></SOURCE>"
                              "<SOURCE><NAME> </NAME></SOURCE></SOURCES></RESULT>");
    ASSERT_EQ(sources.size(), 1U);
    EXPECT_EQ(sources[0].source.find('\x1B'), std::string::npos);
    EXPECT_LT(sources[0].source.size(), 110U);
    EXPECT_EQ(sources[0].items_read, 0);
    EXPECT_EQ(sources[0].items_failed, 0);
}

TEST_F(RemoteSummaryTest, NumberOfSourcesIsLimited) {
    std::string xml = "<RESULT><SOURCES>";
    for (int i = 0; i < 5000; ++i) xml += "<SOURCE><NAME>x</NAME></SOURCE>";
    EXPECT_EQ(Read(xml + "</SOURCES></RESULT>").size(), 100U);
}

TEST_F(RemoteSummaryTest, MissingOrMalformedFileHasNoSources) {
    EXPECT_TRUE(ReadSources(folder_.Path("missing")).empty());
    EXPECT_TRUE(Read("<RESULT><SOURCES>").empty());
}

}  // namespace
}  // namespace Vantix::remote
