// $expand and paging of collections, right and wrong.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

using simulators::BmcOptions;
using simulators::ExpandMode;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

const std::string kExpandedChassis = std::string(kChassis) + kExpand;

Reply GetExpanded(ExpandMode mode) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.expand = mode;
    return SmallBmc(options).client.Get(kExpandedChassis);
}

TEST(BmcSimulatorExpandTest, OfferedExpandReplacesLinksByMembers) {
    const Reply reply = GetExpanded(ExpandMode::kAsRecorded);
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(CountOf("\"Version\"", reply.body), 5);
    EXPECT_THAT(reply.body, HasSubstr("\"Members@odata.count\":5"));
}

TEST(BmcSimulatorExpandTest, PlainRequestKeepsLinksByteForByte) {
    const SmallTree tree;
    tree.Add(kChassis, "{ \"Members\" : [ ] }\n");
    SmallBmc small(tree.Options());
    EXPECT_EQ(small.client.Get(kChassis).body, "{ \"Members\" : [ ] }\n");
}

TEST(BmcSimulatorExpandTest, ScenarioWithoutOfferAnswersNotImplemented) {
    const SmallTree tree;
    tree.Add("/redfish/v1", "{\"Name\":\"Root\"}");
    SmallBmc small(tree.Options());
    EXPECT_EQ(small.client.Get(kExpandedChassis).status, 501);
}

TEST(BmcSimulatorExpandTest, OfferCanBeMadeWhereTheScenarioHasNone) {
    const SmallTree tree;
    tree.Add("/redfish/v1", "{\"Name\":\"Root\"}");
    BmcOptions options = tree.Options();
    options.expand = ExpandMode::kSupported;
    SmallBmc small(options);
    EXPECT_THAT(small.client.Get("/redfish/v1").body, HasSubstr("\"NoLinks\":true"));
    EXPECT_EQ(CountOf("\"Version\"", small.client.Get(kExpandedChassis).body), 5);
}

TEST(BmcSimulatorExpandTest, OfferCanBeTakenBack) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.expand = ExpandMode::kUnsupported;
    SmallBmc small(options);
    EXPECT_THAT(small.client.Get("/redfish/v1").body, HasSubstr("\"NoLinks\":false"));
    EXPECT_EQ(small.client.Get(kExpandedChassis).status, 501);
}

TEST(BmcSimulatorExpandTest, OfferedExpandCanBeRefused) {
    EXPECT_EQ(GetExpanded(ExpandMode::kRefused).status, 400);
}

TEST(BmcSimulatorExpandTest, OfferedExpandCanBeIgnored) {
    const Reply reply = GetExpanded(ExpandMode::kIgnored);
    EXPECT_EQ(reply.status, 200);
    EXPECT_THAT(reply.body, Not(HasSubstr("\"Version\"")));
}

TEST(BmcSimulatorExpandTest, MembersCanLackFieldsThatTheyHaveSingly) {
    const Reply reply = GetExpanded(ExpandMode::kDropsFields);
    EXPECT_THAT(reply.body, Not(HasSubstr("\"Version\"")));
    EXPECT_EQ(CountOf("\"Name\":\"Part", reply.body), 5);
}

TEST(BmcSimulatorExpandTest, TwoDocumentsCanStandInOneBody) {
    const Reply reply = GetExpanded(ExpandMode::kTwoDocuments);
    EXPECT_THAT(reply.body, StartsWith("{\"error\""));
    EXPECT_EQ(CountOf("\"Version\"", reply.body), 5);
}

TEST(BmcSimulatorExpandTest, MemberThatCannotBeReadStaysALink) {
    const SmallTree tree;
    tree.Add("/redfish/v1/Chassis/B", "null");
    const Reply reply = SmallBmc(tree.Options()).client.Get(kExpandedChassis);
    EXPECT_EQ(CountOf("\"Version\"", reply.body), 4);
    EXPECT_THAT(reply.body, HasSubstr(R"({"@odata.id":"/redfish/v1/Chassis/B"})"));
}

TEST(BmcSimulatorExpandTest, ResourceThatIsNoCollectionIsServedAsItStands) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    EXPECT_EQ(small.client.Get("/redfish/v1/Chassis/A?$expand=.").body,
              small.client.Get("/redfish/v1/Chassis/A").body);
}

TEST(BmcSimulatorExpandTest, EncodedDollarIsReadUnlessRefused) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    const std::string target = std::string(kChassis) + "?%24expand=.(%24levels=1)";
    EXPECT_EQ(CountOf("\"Version\"", SmallBmc(options).client.Get(target).body), 5);
    options.refuse_encoded_dollar = true;
    EXPECT_EQ(SmallBmc(options).client.Get(target).status, 400);
}

TEST(BmcSimulatorPagingTest, PagesHoldSoManyMembersAndTheTotal) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.page_size = 2;
    const Reply reply = SmallBmc(options).client.Get(kChassis);
    EXPECT_EQ(CountOf("/redfish/v1/Chassis/", reply.body), 2);
    EXPECT_THAT(reply.body, HasSubstr("\"Members@odata.count\":5"));
    EXPECT_THAT(reply.body, HasSubstr(R"("Members@odata.nextLink":"/redfish/v1/Chassis?$skip=2")"));
}

TEST(BmcSimulatorPagingTest, LastPageHasTheRestAndNoNextLink) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.page_size = 2;
    const Reply reply = SmallBmc(options).client.Get(std::string(kChassis) + "?$skip=4");
    EXPECT_THAT(reply.body, HasSubstr("/redfish/v1/Chassis/E"));
    EXPECT_EQ(CountOf("/redfish/v1/Chassis/", reply.body), 1);
    EXPECT_THAT(reply.body, Not(HasSubstr("nextLink")));
}

TEST(BmcSimulatorPagingTest, SkippingPastTheEndGivesNoMembers) {
    const SmallTree tree;
    const Reply reply = SmallBmc(tree.Options()).client.Get(std::string(kChassis) + "?$skip=99");
    EXPECT_THAT(reply.body, HasSubstr("\"Members\":[]"));
}

TEST(BmcSimulatorPagingTest, NextLinkOfAnExpandedPageExpandsToo) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.page_size = 3;
    SmallBmc small(options);
    const Reply first = small.client.Get(kExpandedChassis);
    EXPECT_EQ(CountOf("\"Version\"", first.body), 3);
    const std::string next = "/redfish/v1/Chassis?$expand=.($levels=1)&$skip=3";
    EXPECT_THAT(first.body, HasSubstr("\"" + next + "\""));
    EXPECT_EQ(CountOf("\"Version\"", small.client.Get(next).body), 2);
}

}  // namespace
}  // namespace simulator_test
