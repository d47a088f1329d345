// Each fault as a client sees it, and which requests show it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/json.hpp>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

using simulators::BmcOptions;
using simulators::Fault;
using simulators::FaultRule;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr char kPart[] = "/redfish/v1/Chassis/A";

FaultRule On(const std::string& target, Fault fault) {
    FaultRule rule;
    rule.target = target;
    rule.fault = std::move(fault);
    return rule;
}

Fault Make(Fault::Kind kind) {
    Fault fault;
    fault.kind = kind;
    return fault;
}

/// What a client sees of kPart under the fault.
Reply Show(const Fault& fault) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.faults = {On(kPart, fault)};
    return SmallBmc(options).client.Get(kPart);
}

bool IsJson(const std::string& text) {
    boost::system::error_code error;
    boost::json::parse(text, error);
    return !error;
}

TEST(BmcSimulatorFaultTest, ResetEndsTheTransfer) {
#ifdef _WIN32
    // The reset is sent, but libcurl's client sees an end without bytes.
    constexpr CURLcode kToldAs = CURLE_GOT_NOTHING;
#else
    constexpr CURLcode kToldAs = CURLE_RECV_ERROR;
#endif
    EXPECT_EQ(Show(Make(Fault::Kind::kReset)).result, kToldAs);
}

TEST(BmcSimulatorFaultTest, EmptyReplyHasNoBytes) {
    EXPECT_EQ(Show(Make(Fault::Kind::kEmptyReply)).result, CURLE_GOT_NOTHING);
}

TEST(BmcSimulatorFaultTest, SilenceLastsUntilTheClientGivesUp) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    small.bmc.SetFaults({On(kPart, Make(Fault::Kind::kSilent))});
    small.client.SetOption(CURLOPT_TIMEOUT_MS, 200L);
    EXPECT_EQ(small.client.Get(kPart).result, CURLE_OPERATION_TIMEDOUT);
}

TEST(BmcSimulatorFaultTest, TruncatedBodyIsShorterThanItsLength) {
    const Reply reply = Show(Make(Fault::Kind::kTruncate));
    EXPECT_EQ(reply.result, CURLE_PARTIAL_FILE);
    EXPECT_EQ(reply.body.size(), std::stoul(reply.Header("content-length")) / 2);
}

TEST(BmcSimulatorFaultTest, DrippedBodyArrivesWhole) {
    Fault fault = Make(Fault::Kind::kSlowDrip);
    fault.drip_bytes = 20;
    fault.drip_interval = std::chrono::milliseconds(1);
    const Reply reply = Show(fault);
    EXPECT_EQ(reply.result, CURLE_OK);
    EXPECT_TRUE(IsJson(reply.body));
}

TEST(BmcSimulatorFaultTest, DrippedBodyOutlastsAnImpatientClient) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    Fault fault = Make(Fault::Kind::kSlowDrip);
    fault.drip_interval = std::chrono::milliseconds(500);
    small.bmc.SetFaults({On(kPart, fault)});
    // The patience is for the body alone: the handshake is over and done with.
    small.client.Get("/redfish/v1");
    small.client.SetOption(CURLOPT_TIMEOUT_MS, 1200L);
    const Reply reply = small.client.Get(kPart);
    EXPECT_EQ(reply.result, CURLE_OPERATION_TIMEDOUT);
    EXPECT_EQ(reply.status, 200);
}

TEST(BmcSimulatorFaultTest, DelayedAnswerIsRight) {
    Fault fault = Make(Fault::Kind::kDelay);
    fault.delay = std::chrono::milliseconds(5);
    EXPECT_THAT(Show(fault).body, HasSubstr("Part A"));
}

TEST(BmcSimulatorFaultTest, ConnectionDiesBehindARightAnswer) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    small.bmc.SetFaults({On(kPart, Make(Fault::Kind::kCloseAfterReply))});
    EXPECT_EQ(small.client.Get(kPart).Header("connection"), "");
    EXPECT_EQ(small.client.Get("/redfish/v1").new_connections, 1);
}

TEST(BmcSimulatorFaultTest, StatusCarriesMessageAndRetryAfter) {
    Fault fault = Make(Fault::Kind::kStatus);
    fault.status = 503;
    fault.message_id = "Base.1.12.ServiceTemporarilyUnavailable";
    fault.retry_after = "7";
    const Reply reply = Show(fault);
    EXPECT_EQ(reply.status, 503);
    EXPECT_EQ(reply.Header("retry-after"), "7");
    EXPECT_THAT(reply.body, HasSubstr("ServiceTemporarilyUnavailable"));
}

TEST(BmcSimulatorFaultTest, BodyIsServedWordForWord) {
    Fault fault = Make(Fault::Kind::kBody);
    fault.status = 418;
    fault.content_type = "text/plain";
    fault.body = "no JSON here";
    const Reply reply = Show(fault);
    EXPECT_EQ(reply.status, 418);
    EXPECT_EQ(reply.Header("content-type"), "text/plain");
    EXPECT_EQ(reply.body, "no JSON here");
}

TEST(BmcSimulatorFaultTest, EmptyBodyHasLengthZero) {
    const Reply reply = Show(Make(Fault::Kind::kEmptyBody));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.Header("content-length"), "0");
}

TEST(BmcSimulatorFaultTest, BadJsonHasTheRightLength) {
    const Reply reply = Show(Make(Fault::Kind::kBadJson));
    EXPECT_EQ(reply.result, CURLE_OK);
    EXPECT_FALSE(IsJson(reply.body));
    EXPECT_THAT(reply.body, StartsWith("{"));
}

TEST(BmcSimulatorFaultTest, WrongTypesStayJsonAndKeepTheLink) {
    const Reply reply = Show(Make(Fault::Kind::kWrongTypes));
    EXPECT_TRUE(IsJson(reply.body));
    EXPECT_THAT(reply.body, HasSubstr(R"("Version":{"unexpected":"1.A"})"));
    EXPECT_THAT(reply.body, HasSubstr(R"("@odata.id":"/redfish/v1/Chassis/A")"));
}

TEST(BmcSimulatorFaultTest, ControlBytesStandInsideAText) {
    const Reply reply = Show(Make(Fault::Kind::kControlBytes));
    EXPECT_FALSE(IsJson(reply.body));
    EXPECT_THAT(reply.body, HasSubstr("\"a\rb\x01\xff/redfish"));
}

TEST(BmcSimulatorFaultTest, TwoDocumentsStandInOneBody) {
    const Reply reply = Show(Make(Fault::Kind::kTwoDocuments));
    EXPECT_THAT(reply.body, StartsWith("{\"error\""));
    EXPECT_THAT(reply.body, EndsWith("\"Version\":\"1.A\"}"));
}

TEST(BmcSimulatorFaultTest, HtmlPageSaysSoInItsType) {
    const Reply reply = Show(Make(Fault::Kind::kHtml));
    EXPECT_EQ(reply.Header("content-type"), "text/html");
    EXPECT_THAT(reply.body, StartsWith("<html>"));
}

TEST(BmcSimulatorFaultTest, HugeBodyIsValidJson) {
    Fault fault = Make(Fault::Kind::kHugeBody);
    fault.size = 1 << 20;
    const Reply reply = Show(fault);
    EXPECT_GE(reply.body.size(), fault.size);
    EXPECT_TRUE(IsJson(reply.body));
}

TEST(BmcSimulatorFaultTest, DeepJsonHasSoManyLevels) {
    Fault fault = Make(Fault::Kind::kDeepJson);
    fault.size = 500;
    EXPECT_EQ(CountOf("{", Show(fault).body), 500);
}

TEST(BmcSimulatorFaultTest, GzipIsDecodedByACompetentClient) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    small.bmc.SetFaults({On(kPart, Make(Fault::Kind::kGzip))});
    small.client.SetOption(CURLOPT_ACCEPT_ENCODING, "gzip");
    const Reply reply = small.client.Get(kPart);
    EXPECT_EQ(reply.result, CURLE_OK);
    EXPECT_EQ(reply.Header("content-encoding"), "gzip");
    EXPECT_THAT(reply.body, HasSubstr("Part A"));
}

TEST(BmcSimulatorFaultTest, RedirectNamesItsTarget) {
    Fault fault = Make(Fault::Kind::kRedirect);
    fault.status = 308;
    fault.location = "/redfish/v1/Chassis/B";
    const Reply reply = Show(fault);
    EXPECT_EQ(reply.status, 308);
    EXPECT_EQ(reply.Header("location"), "/redfish/v1/Chassis/B");
}

TEST(BmcSimulatorFaultTest, RuleWithTimesIsUsedUp) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    Fault fault;
    fault.status = 500;
    FaultRule rule = On(kPart, fault);
    rule.times = 2;
    small.bmc.SetFaults({rule});
    EXPECT_EQ(small.client.Get(kPart).status, 500);
    EXPECT_EQ(small.client.Get(kPart).status, 500);
    EXPECT_EQ(small.client.Get(kPart).status, 200);
}

TEST(BmcSimulatorFaultTest, RuleSparesTheFirstRequestsThatItSkips) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    Fault fault;
    fault.status = 500;
    FaultRule rule = On(kPart, fault);
    rule.skip = 1;
    small.bmc.SetFaults({rule});
    EXPECT_EQ(small.client.Get(kPart).status, 200);
    EXPECT_EQ(small.client.Get(kPart).status, 500);
}

TEST(BmcSimulatorFaultTest, RulePicksTheNthRequest) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    FaultRule rule;
    rule.nth_request = 2;
    rule.fault.status = 429;
    small.bmc.SetFaults({rule});
    EXPECT_EQ(small.client.Get(kPart).status, 200);
    EXPECT_EQ(small.client.Get("/redfish/v1").status, 429);
    EXPECT_EQ(small.client.Get(kPart).status, 200);
}

TEST(BmcSimulatorFaultTest, RulePicksByMethodPrefixAndPart) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    FaultRule rule;
    rule.method = "GET";
    rule.target_prefix = "/redfish/v1/Chassis";
    rule.target_contains = "$expand";
    rule.fault.status = 404;
    small.bmc.SetFaults({rule});
    EXPECT_EQ(small.client.Get("/redfish/v1/Chassis").status, 200);
    EXPECT_EQ(small.client.Get("/redfish/v1?$expand=.").status, 200);
    EXPECT_EQ(small.client.Get("/redfish/v1/Chassis?$expand=.").status, 404);
}

TEST(BmcSimulatorFaultTest, ClearedFaultsLeaveTheRightAnswers) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    Fault fault;
    fault.status = 500;
    small.bmc.SetFaults({On(kPart, fault)});
    small.bmc.SetFaults({});
    EXPECT_EQ(small.client.Get(kPart).status, 200);
}

}  // namespace
}  // namespace simulator_test
