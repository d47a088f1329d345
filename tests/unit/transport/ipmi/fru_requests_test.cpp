#include "transport/ipmi/fru_requests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Vantix::transport {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Lines(const std::vector<RawRequest>& requests) {
    std::vector<std::string> lines;
    for (const auto& request : requests) lines.push_back(RawLine(request));
    return lines;
}

RawAnswer Chunk(std::uint8_t told, std::size_t sent) {
    RawAnswer answer{kCompletionOk, {told}};
    answer.data.resize(1 + sent, 0xab);
    return answer;
}

TEST(FruRequestsTest, SizeIsReadLowByteFirst) {
    const auto size = ParseFruSize({kCompletionOk, {0x34, 0x12, 0}});
    ASSERT_TRUE(size);
    EXPECT_EQ(size->bytes, 0x1234U);
    EXPECT_FALSE(size->is_in_words);
}

TEST(FruRequestsTest, DeviceMayCountInWords) {
    EXPECT_TRUE(ParseFruSize({kCompletionOk, {0, 1, 1}})->is_in_words);
}

TEST(FruRequestsTest, MissingDeviceHasNoSize) {
    EXPECT_FALSE(ParseFruSize({0xcb, {}}));
    EXPECT_FALSE(ParseFruSize({kCompletionOk, {0, 1}}));
}

TEST(FruRequestsTest, BytesAreReadSixteenAtATime) {
    EXPECT_THAT(
        Lines(FruReadRequests(2, 0, 40, false)),
        ElementsAre("raw 0x0a 0x11 0x02 0x00 0x00 0x10", "raw 0x0a 0x11 0x02 0x10 0x00 0x10",
                    "raw 0x0a 0x11 0x02 0x20 0x00 0x08"));
}

TEST(FruRequestsTest, OffsetBeyondTwoHundredFiftySixUsesBothBytes) {
    EXPECT_THAT(Lines(FruReadRequests(0, 0x120, 0x130, false)),
                ElementsAre("raw 0x0a 0x11 0x00 0x20 0x01 0x10"));
}

TEST(FruRequestsTest, WordsHalveOffsetAndCount) {
    EXPECT_THAT(Lines(FruReadRequests(0, 16, 29, true)),
                ElementsAre("raw 0x0a 0x11 0x00 0x08 0x00 0x07"));
}

TEST(FruRequestsTest, NothingIsAskedForAnEmptyRange) {
    EXPECT_THAT(FruReadRequests(0, 16, 16, false), IsEmpty());
    EXPECT_THAT(FruReadRequests(0, 32, 16, false), IsEmpty());
}

TEST(FruRequestsTest, WholeChunksAreJoined) {
    Bytes image;
    EXPECT_TRUE(AppendFruBytes({Chunk(16, 16), Chunk(16, 16)}, false, image));
    EXPECT_EQ(image.size(), 32U);
}

TEST(FruRequestsTest, MissingChunkEndsTheImage) {
    Bytes image;
    EXPECT_FALSE(AppendFruBytes({Chunk(16, 16), {0xc9, {}}, Chunk(16, 16)}, false, image));
    EXPECT_EQ(image.size(), 16U);
}

TEST(FruRequestsTest, ShortChunkEndsTheImage) {
    Bytes image;
    EXPECT_FALSE(AppendFruBytes({Chunk(5, 5), Chunk(16, 16)}, false, image));
    EXPECT_EQ(image.size(), 5U);
}

TEST(FruRequestsTest, CountThatPromisesMoreThanWasSentIsNotBelieved) {
    Bytes image;
    EXPECT_FALSE(AppendFruBytes({Chunk(200, 7)}, false, image));
    EXPECT_EQ(image.size(), 7U);
}

TEST(FruRequestsTest, BytesBeyondTheCountAreNotTaken) {
    Bytes image;
    EXPECT_FALSE(AppendFruBytes({Chunk(3, 16)}, false, image));
    EXPECT_EQ(image.size(), 3U);
}

TEST(FruRequestsTest, CountInWordsIsTwiceTheBytes) {
    Bytes image;
    EXPECT_TRUE(AppendFruBytes({Chunk(8, 16)}, true, image));
    EXPECT_EQ(image.size(), 16U);
}

}  // namespace
}  // namespace Vantix::transport
