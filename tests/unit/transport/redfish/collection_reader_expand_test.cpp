// Members asked for inline, and what becomes of services that are bad at it.

#include "unit/transport/redfish/collection_test.h"

namespace Vantix::transport {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

using CollectionReaderExpandTest = CollectionReaderTest;

// ---- taking them ---------------------------------------------------------------------------

TEST_F(CollectionReaderExpandTest, CompleteInlineMembersNeedNoOtherRequest) {
    OpenWith(kExpand);
    peer_.On(kExpanded, Json(Inline({Member("1"), Member("2")})));
    EXPECT_THAT(Paths(Read()), ElementsAre("/c/1", "/c/2"));
}

TEST_F(CollectionReaderExpandTest, ExpandedReadsAreSlowAndTriedOnce) {
    OpenWith(kExpand);
    peer_.On(kExpanded, Json(Inline({})));
    Read();
    EXPECT_EQ(peer_.Request(kExpanded).timeout, RedfishSettings().inventory_timeout);
    EXPECT_EQ(peer_.Request(kExpanded).max_tries, 1);
}

TEST_F(CollectionReaderExpandTest, IncompleteInlineMembersAreReadSingly) {
    OpenWith(kExpand);
    options_.required_fields = {"Id", "Name", "Version"};
    peer_.On(kExpanded, Json(Inline({Member("1", R"(,"Version":"1")"), Member("2"),
                                     R"({"@odata.id":"/c/3","Id":"3","Version":"3"})"})));
    Offer({"2", "3"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(Paths(answer), ElementsAre("/c/1", "/c/2", "/c/3"));
    EXPECT_TRUE(answer.members[2].body.contains("Name"));
}

TEST_F(CollectionReaderExpandTest, WhatCameInlineIsKeptWhenTheMemberCannotBeReadSingly) {
    OpenWith(kExpand);
    options_.required_fields = {"Id", "Name", "Version"};
    peer_.On(kExpanded, Json(Inline({R"({"@odata.id":"/c/1","Id":"1","Version":"3"})"})));
    peer_.On("GET /c/1", Status(404));
    const CollectionAnswer answer = Read();
    EXPECT_THAT(Paths(answer), ElementsAre("/c/1"));
    EXPECT_EQ(answer.failed_members, 1);
}

TEST_F(CollectionReaderExpandTest, IgnoredExpandIsReadSingly) {
    OpenWith(kExpand);
    peer_.On(kExpanded, Json(CollectionOf({"/c/1"})));
    Offer({"1"});
    EXPECT_THAT(Read().members, SizeIs(1));
}

TEST_F(CollectionReaderExpandTest, ExpandedPagesAreFollowed) {
    OpenWith(kExpand);
    peer_.On(kExpanded, Json(Inline({Member("1")}, NextLink("/c?$expand=.($levels=1)&$skip=1"))));
    peer_.On("GET /c?$expand=.($levels=1)&$skip=1", Json(Inline({Member("2")})));
    EXPECT_THAT(Paths(Read()), ElementsAre("/c/1", "/c/2"));
}

TEST_F(CollectionReaderExpandTest, InlineMemberWithoutAddressIsKept) {
    OpenWith(kExpand);
    peer_.On(kExpanded, Json(R"({"Members":[{"Id":"1","Name":"n"}]})"));
    EXPECT_THAT(Paths(Read()), ElementsAre("/c/1"));
}

struct BadExpand {
    const char* name;
    ScriptedReply reply;
};

class RefusedExpandTest : public CollectionReaderTest,
                          public ::testing::WithParamInterface<BadExpand> {};

TEST_P(RefusedExpandTest, PlainReadingFollowsAndTheRefusalIsRemembered) {
    OpenWith(kExpand);
    peer_.On(kExpanded, GetParam().reply);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"})));
    Offer({"1"});
    const CollectionAnswer answer = Read();
    EXPECT_FALSE(answer.failure);
    EXPECT_THAT(Paths(answer), ElementsAre("/c/1"));
    peer_.On("GET /d", Json(R"({"Members":[]})"));
    EXPECT_FALSE(Read("/d").failure);
}

INSTANTIATE_TEST_SUITE_P(
    All, RefusedExpandTest,
    ::testing::Values(BadExpand{"Status400", Refusal(400)}, BadExpand{"Status403", Refusal(403)},
                      BadExpand{"Status501", Refusal(501)}, BadExpand{"Status500", Status(500)},
                      BadExpand{"Status503", Status(503)},
                      BadExpand{"Html", Status(200, "<html></html>")},
                      BadExpand{"TwoDocuments", Json(R"({"error":{}}{"Members":[]})")},
                      BadExpand{"CutOff", Json(R"({"Members":[{"Id")")},
                      BadExpand{"ErrorDocument", Json(R"({"error":{"code":"c"}})")},
                      BadExpand{"NoMembers", Json(R"({"Name":"c"})")},
                      BadExpand{"Truncated", Broken(HttpErrorKind::kTruncated)},
                      BadExpand{"TooLarge", Broken(HttpErrorKind::kTooLarge)},
                      BadExpand{"Silent", Broken(HttpErrorKind::kTimeout)},
                      BadExpand{"Reset", Broken(HttpErrorKind::kReset)}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(CollectionReaderExpandTest, MissingCollectionIsNoRefusalOfExpand) {
    OpenWith(kExpand);
    peer_.On(kExpanded, Status(404)).On(kPlain, Status(404));
    EXPECT_EQ(Read().failure.problem, RedfishProblem::kNotFound);
    EXPECT_NE(service_->ExpandQuery(), "");
}

class HopelessExpandTest : public CollectionReaderTest,
                           public ::testing::WithParamInterface<HttpErrorKind> {};

TEST_P(HopelessExpandTest, IsNotFollowedByThePlainReading) {
    OpenWith(kExpand);
    peer_.On(kExpanded, Broken(GetParam()));
    EXPECT_EQ(Read().failure.transport, GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, HopelessExpandTest,
                         ::testing::Values(HttpErrorKind::kCancelled, HttpErrorKind::kDeadline,
                                           HttpErrorKind::kConnect,
                                           HttpErrorKind::kConnectTimeout));

}  // namespace
}  // namespace Vantix::transport
