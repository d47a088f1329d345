// Services that answer badly, late or not at all.
#include <gtest/gtest.h>

#include "integration/transport/http/http_client.h"
#include "transport/http/polite_transport.h"

namespace Vantix::transport {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;
using simulators::Fault;
using Kind = simulators::Fault::Kind;

BmcOptions Bad(const Fault& fault) {
    BmcOptions options = SmallBmc();
    options.faults = {Always(fault)};
    return options;
}

HttpRequest ImpatientGet(int milliseconds) {
    HttpRequest request = Get(kRoot);
    request.timeout = Milliseconds(milliseconds);
    return request;
}

TEST(BadPeerTest, SilentServerEndsInATimeout) {
    const BmcSimulator bmc(Bad(FaultOf(Kind::kSilent)));
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), ImpatientGet(200));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kTimeout);
    EXPECT_EQ(outcome.error.text, "no byte came for 200 milliseconds");
}

TEST(BadPeerTest, SilenceOfOneRequestDoesNotStopTheOthers) {
    BmcOptions options = SmallBmc();
    simulators::FaultRule rule = Always(FaultOf(Kind::kSilent));
    rule.target = "/redfish/v1/silent";
    options.faults = {rule};
    const BmcSimulator bmc(options);
    CurlTransport transport(SettingsFor(bmc));
    HttpRequest silent = ImpatientGet(200);
    silent.target = rule.target;
    const std::vector<HttpOutcome> outcomes = AskAll(transport, {silent, Get(kRoot)});
    EXPECT_EQ(outcomes[0].error.kind, HttpErrorKind::kTimeout);
    EXPECT_EQ(outcomes[1].response.status, 200);
}

TEST(BadPeerTest, BodyThatKeepsArrivingIsNotCut) {
    BmcOptions options = SmallBmc();
    options.replaced_bodies[kRoot] = "{\"Name\":\"" + std::string(150, 'x') + "\"}";
    Fault drip = FaultOf(Kind::kSlowDrip);
    drip.drip_bytes = 10;
    drip.drip_interval = std::chrono::milliseconds(100);
    options.faults = {Always(drip)};
    const BmcSimulator bmc(options);
    // The parts take one and a half seconds altogether, more than the limit of silence.
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), ImpatientGet(1000));
    EXPECT_EQ(outcome.response.body, options.replaced_bodies[kRoot]) << outcome.error.text;
}

TEST(BadPeerTest, DripWithLongPausesEndsInATimeout) {
    Fault drip = FaultOf(Kind::kSlowDrip);
    drip.drip_interval = std::chrono::seconds(60);
    const BmcSimulator bmc(Bad(drip));
    EXPECT_EQ(AskOnce(SettingsFor(bmc), ImpatientGet(200)).error.kind, HttpErrorKind::kTimeout);
}

TEST(BadPeerTest, SteadyDripEndsWithTheDeadlineOfTheTarget) {
    Fault drip = FaultOf(Kind::kSlowDrip);
    drip.drip_interval = std::chrono::milliseconds(50);
    BmcOptions options = Bad(drip);
    options.replaced_bodies[kRoot] = "{\"Name\":\"" + std::string(5000, 'x') + "\"}";
    const BmcSimulator bmc(options);
    CurlTransport curl(SettingsFor(bmc));
    PoliteSettings settings;
    settings.deadline = Milliseconds(500);
    PoliteTransport polite(curl, SystemClock(), settings);
    EXPECT_EQ(Ask(polite, Get(kRoot)).error.kind, HttpErrorKind::kDeadline);
}

TEST(BadPeerTest, ResetIsSeen) {
    const BmcSimulator bmc(Bad(FaultOf(Kind::kReset)));
    EXPECT_EQ(AskOnce(SettingsFor(bmc), Get(kRoot)).error.kind, HttpErrorKind::kReset);
    EXPECT_EQ(bmc.Counts().requests, 1);
}

TEST(BadPeerTest, EmptyReplyIsAReset) {
    const BmcSimulator bmc(Bad(FaultOf(Kind::kEmptyReply)));
    EXPECT_EQ(AskOnce(SettingsFor(bmc), Get(kRoot)).error.kind, HttpErrorKind::kReset);
}

TEST(BadPeerTest, ResetOfAKeptConnectionIsReportedNotHidden) {
    const BmcSimulator bmc([] {
        BmcOptions options = SmallBmc();
        simulators::FaultRule rule = Always(FaultOf(Kind::kReset));
        rule.nth_request = 2;
        options.faults = {rule};
        return options;
    }());
    CurlTransport transport(SettingsFor(bmc));
    Ask(transport, Get(kRoot));
    const HttpOutcome outcome = Ask(transport, Get(kRoot));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kReset);
    EXPECT_TRUE(outcome.response.is_reused_connection);
    EXPECT_EQ(bmc.Counts().requests, 2);
}

TEST(BadPeerTest, PostIsNotRepeatedOnANewConnection) {
    const BmcSimulator bmc([] {
        BmcOptions options = SmallBmc();
        simulators::FaultRule rule = Always(FaultOf(Kind::kEmptyReply));
        rule.method = "POST";
        rule.times = 1;
        options.faults = {rule};
        return options;
    }());
    CurlTransport transport(SettingsFor(bmc));
    Ask(transport, Get(kRoot));
    const HttpOutcome outcome = Ask(transport, PostTo("/redfish/v1/SessionService/Sessions", "{}"));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kReset);
    EXPECT_EQ(bmc.Counts().requests, 2);
}

TEST(BadPeerTest, CutBodyIsTruncated) {
    const BmcSimulator bmc(Bad(FaultOf(Kind::kTruncate)));
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), Get(kRoot));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kTruncated) << outcome.error.text;
    EXPECT_EQ(outcome.response.body, "");
}

TEST(BadPeerTest, BodyBeyondTheLimitIsTooLarge) {
    Fault huge = FaultOf(Kind::kHugeBody);
    huge.size = 300000;
    const BmcSimulator bmc(Bad(huge));
    CurlSettings settings = SettingsFor(bmc);
    settings.max_body_bytes = 100000;
    const HttpOutcome outcome = AskOnce(settings, Get(kRoot));
    EXPECT_EQ(outcome.error.kind, HttpErrorKind::kTooLarge);
    EXPECT_EQ(outcome.error.text, "the answer is larger than 100000 bytes");
    EXPECT_EQ(outcome.response.body, "");
}

TEST(BadPeerTest, BodyAtTheLimitIsRead) {
    Fault huge = FaultOf(Kind::kHugeBody);
    huge.size = 300000;
    const BmcSimulator bmc(Bad(huge));
    const std::size_t whole = huge.size + std::string(R"({"Name":""})").size();
    CurlSettings settings = SettingsFor(bmc);
    settings.max_body_bytes = whole;
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).response.body.size(), whole);
}

TEST(BadPeerTest, CompressionThatNobodyAskedForIsDecoded) {
    const BmcSimulator bmc(Bad(FaultOf(Kind::kGzip)));
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), Get(kRoot));
    EXPECT_EQ(outcome.response.body, SmallBmc().replaced_bodies[kRoot]);
}

TEST(BadPeerTest, RedirectIsHandedUpNotFollowed) {
    const BmcSimulator other(SmallBmc());
    Fault redirect = FaultOf(Kind::kRedirect);
    redirect.status = 307;
    redirect.location = other.Url() + kRoot;
    const BmcSimulator bmc(Bad(redirect));
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), GetAs(kRoot, "demo", "x"));
    EXPECT_EQ(outcome.response.status, 307);
    EXPECT_EQ(outcome.response.Header("location"), redirect.location);
    EXPECT_EQ(other.Counts().connections, 0);
}

TEST(BadPeerTest, RefusalIsAnAnswer) {
    Fault fault = FaultOf(Kind::kStatus);
    fault.status = 503;
    fault.retry_after = "7";
    const BmcSimulator bmc(Bad(fault));
    const HttpOutcome outcome = AskOnce(SettingsFor(bmc), Get(kRoot));
    EXPECT_TRUE(outcome.Answered());
    EXPECT_EQ(outcome.response.status, 503);
    EXPECT_EQ(outcome.response.Header("retry-after"), "7");
}

TEST(BadPeerTest, ServiceWithoutTlsFailsInTheHandshake) {
    BmcOptions options = SmallBmc();
    options.plain_http = true;
    const BmcSimulator bmc(options);
    EXPECT_FALSE(AskOnce(SettingsFor(bmc), GetAs(kRoot, "demo", "x")).Answered());
    EXPECT_EQ(bmc.Counts().authorization_headers_seen, 0);
}

// ---- with politeness on top
// ------------------------------------------------------------------------

PoliteSettings ShortWaits() {
    PoliteSettings settings;
    settings.retry_waits = {Milliseconds(1), Milliseconds(1), Milliseconds(1)};
    return settings;
}

TEST(BadPeerTest, ResetGetSucceedsOnAFreshConnection) {
    BmcOptions options = SmallBmc();
    simulators::FaultRule rule = Always(FaultOf(Kind::kReset));
    rule.times = 1;
    options.faults = {rule};
    const BmcSimulator bmc(options);
    CurlTransport curl(SettingsFor(bmc));
    PoliteTransport polite(curl, SystemClock(), ShortWaits());
    EXPECT_EQ(Ask(polite, Get(kRoot)).response.status, 200);
    EXPECT_EQ(bmc.Counts().connections, 2);
}

TEST(BadPeerTest, ConnectionsThatDieAfterEachAnswerCostNothing) {
    const BmcSimulator bmc(Bad(FaultOf(Kind::kCloseAfterReply)));
    CurlTransport curl(SettingsFor(bmc));
    PoliteTransport polite(curl, SystemClock(), ShortWaits());
    for (int index = 0; index < 5; ++index) {
        EXPECT_EQ(Ask(polite, Get(kRoot)).response.status, 200);
    }
}

TEST(BadPeerTest, BusyServiceIsAskedOneByOneAndAnswersAll) {
    BmcOptions options = SmallBmc();
    Fault busy = FaultOf(Kind::kStatus);
    busy.status = 503;
    simulators::FaultRule rule = Always(busy);
    rule.times = 3;
    options.faults = {rule};
    const BmcSimulator bmc(options);
    CurlTransport curl(SettingsFor(bmc));
    PoliteTransport polite(curl, SystemClock(), ShortWaits());
    for (const HttpOutcome& outcome : AskAll(polite, std::vector<HttpRequest>(8, Get(kRoot)))) {
        EXPECT_EQ(outcome.response.status, 200);
    }
    EXPECT_TRUE(polite.IsDistressed());
    EXPECT_EQ(bmc.Counts().requests, 11);
}

TEST(BadPeerTest, LogOutPassesWhileOthersAreStuck) {
    BmcOptions options = SmallBmc();
    simulators::FaultRule rule = Always(FaultOf(Kind::kSilent));
    rule.method = "GET";
    options.faults = {rule};
    const BmcSimulator bmc(options);
    CurlTransport curl(SettingsFor(bmc));
    PoliteTransport polite(curl, SystemClock(), ShortWaits());
    for (int index = 0; index < 3; ++index) {
        polite.Submit(Get(kRoot), [](HttpOutcome&& outcome) {
            EXPECT_EQ(outcome.error.kind, HttpErrorKind::kCancelled);
        });
    }
    polite.Step(Milliseconds(50));
    polite.AbandonAll(Milliseconds(5000));
    HttpRequest log_out = Get("/redfish/v1/SessionService/Sessions/1");
    log_out.method = HttpMethod::kDelete;
    EXPECT_EQ(Ask(polite, log_out).response.status, 401);  // nobody was logged in
}

}  // namespace
}  // namespace Vantix::transport
