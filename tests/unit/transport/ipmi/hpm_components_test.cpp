#include "transport/ipmi/hpm_components.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

RawAnswer Answered(Bytes data) {
    return {kCompletionOk, std::move(data)};
}

TEST(HpmComponentsTest, RequestsNameTheGroupTheComponentAndTheProperty) {
    EXPECT_EQ(RawLine(HpmCapabilitiesRequest()), "raw 0x2c 0x2e 0x00");
    EXPECT_EQ(RawLine(HpmRevisionRequest(3)), "raw 0x2c 0x2f 0x00 0x03 0x01");
    EXPECT_EQ(RawLine(HpmDescriptionRequest(3)), "raw 0x2c 0x2f 0x00 0x03 0x02");
}

TEST(HpmComponentsTest, EachBitOfThePresenceByteIsAComponent) {
    EXPECT_THAT(ParseHpmComponents(Answered({0, 0, 0x3d, 1, 2, 3, 4, 0x85})), ElementsAre(0, 2, 7));
}

TEST(HpmComponentsTest, ControllerWithoutHpmHasNone) {
    EXPECT_THAT(ParseHpmComponents({0xc1, {}}), IsEmpty());
    EXPECT_THAT(ParseHpmComponents({-1, {}}), IsEmpty());
}

TEST(HpmComponentsTest, ShortOrForeignAnswerGivesNone) {
    EXPECT_THAT(ParseHpmComponents(Answered({0, 0, 0x3d, 1, 2, 3, 4})), IsEmpty());
    EXPECT_THAT(ParseHpmComponents(Answered({3, 0, 0x3d, 1, 2, 3, 4, 0xff})), IsEmpty());
}

TEST(HpmComponentsTest, DescriptionEndsAtTheNul) {
    EXPECT_EQ(ParseHpmDescription(Answered({0, 'C', 'P', 'L', 'D', 0, 'x', 'x', 0, 0, 0, 0, 0})),
              "CPLD");
}

TEST(HpmComponentsTest, DescriptionIsTwelveCharactersAtMost) {
    Bytes data = {0};
    data.resize(31, 'a');
    EXPECT_EQ(ParseHpmDescription(Answered(data)), "aaaaaaaaaaaa");
}

TEST(HpmComponentsTest, MissingDescriptionIsEmpty) {
    EXPECT_EQ(ParseHpmDescription(Answered({0})), "");
    EXPECT_EQ(ParseHpmDescription({0xc1, {}}), "");
}

TEST(HpmComponentsTest, RevisionHasVersionAndAuxiliaryBytes) {
    const auto revision = ParseHpmRevision(Answered({0, 2, 0x17, 1, 2, 3, 4}));
    ASSERT_TRUE(revision);
    EXPECT_EQ(revision->version, "2.17");
    EXPECT_THAT(revision->auxiliary, ElementsAre(1, 2, 3, 4));
}

TEST(HpmComponentsTest, RevisionWithoutAuxiliaryBytesIsComplete) {
    const auto revision = ParseHpmRevision(Answered({0, 2, 0x17}));
    ASSERT_TRUE(revision);
    EXPECT_THAT(revision->auxiliary, IsEmpty());
}

TEST(HpmComponentsTest, RevisionOfOnesIsUnknown) {
    EXPECT_FALSE(ParseHpmRevision(Answered({0, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff})));
}

TEST(HpmComponentsTest, ShortRevisionIsUnknown) {
    EXPECT_FALSE(ParseHpmRevision(Answered({0, 2})));
    EXPECT_FALSE(ParseHpmRevision(Answered({})));
}

}  // namespace
}  // namespace Vantix::transport
