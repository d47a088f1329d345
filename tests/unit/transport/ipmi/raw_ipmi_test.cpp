#include "transport/ipmi/raw_ipmi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(RawIpmiTest, CodeBeforeTheDataIsNoData) {
    const RawAnswer answer = AnswerBehindCode(0, {0x00, 0x20, 0x01}, 3);
    EXPECT_TRUE(answer.IsOk());
    EXPECT_THAT(answer.data, ElementsAre(0x20, 0x01));
}

TEST(RawIpmiTest, DataWithoutCodeStayWhole) {
    EXPECT_THAT(AnswerBehindCode(0, {0x20, 0x01}, 2).data, ElementsAre(0x20, 0x01));
}

TEST(RawIpmiTest, OnlyTheToldLengthCounts) {
    EXPECT_THAT(AnswerBehindCode(0, {0x00, 0x20, 0x01, 0xaa, 0xbb}, 3).data,
                ElementsAre(0x20, 0x01));
    EXPECT_THAT(AnswerBehindCode(0, {0x00, 0x20}, 0xffffffff).data, ElementsAre(0x20));
    EXPECT_THAT(AnswerBehindCode(0, {0x00, 0x20}, 0).data, IsEmpty());
}

TEST(RawIpmiTest, RefusalKeepsItsCode) {
    const RawAnswer answer = AnswerBehindCode(0xc1, {0xc1}, 1);
    EXPECT_EQ(answer.completion, 0xc1);
    EXPECT_THAT(answer.data, IsEmpty());
    EXPECT_EQ(AnswerBehindCode(0xc1, {}, 0).completion, 0xc1);
}

}  // namespace
}  // namespace Vantix::transport
