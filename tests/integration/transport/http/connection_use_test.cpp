// How connections are opened, kept and limited.
#include <gtest/gtest.h>

#include "integration/transport/http/http_client.h"
#include "support/environment.h"
#include "transport/http/polite_transport.h"

namespace Vantix::transport {
namespace {

using simulators::BmcOptions;
using simulators::BmcSimulator;

// Proxy variables of a site that can reach the internet, but no BMC.
class DeadProxyEnvironment {
  public:
    DeadProxyEnvironment() { Set("http://127.0.0.1:1"); }
    ~DeadProxyEnvironment() { Set(nullptr); }

  private:
    static void Set(const char* value) {
        for (const char* name : {"https_proxy", "HTTPS_PROXY", "http_proxy", "all_proxy"}) {
            test_support::SetVariable(name, value);
        }
    }
};

TEST(ConnectionUseTest, DeadProxyInTheEnvironmentIsIgnored) {
    const BmcSimulator bmc(SmallBmc());
    const DeadProxyEnvironment environment;
    EXPECT_EQ(AskOnce(SettingsFor(bmc), Get(kRoot)).response.status, 200);
}

TEST(ConnectionUseTest, ProxyOfTheEnvironmentIsUsedOnDemand) {
    const BmcSimulator bmc(SmallBmc());
    const DeadProxyEnvironment environment;
    CurlSettings settings = SettingsFor(bmc);
    settings.use_environment_proxy = true;
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kConnect);
    EXPECT_EQ(bmc.Counts().connections, 0);
}

TEST(ConnectionUseTest, GivenProxyIsUsed) {
    const BmcSimulator bmc(SmallBmc());
    CurlSettings settings = SettingsFor(bmc);
    settings.proxy = "http://127.0.0.1:1";
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kConnect);
    EXPECT_EQ(bmc.Counts().connections, 0);
}

TEST(ConnectionUseTest, SlowHandshakesAreNotWaitedForWhereAFreeConnectionServesSooner) {
    BmcOptions options = SmallBmc();
    options.handshake_delay = std::chrono::milliseconds(300);
    const BmcSimulator bmc(options);
    CurlTransport transport(SettingsFor(bmc));
    PoliteTransport polite(transport, SystemClock(), {});
    int answers = 0;
    const auto count = [&](HttpOutcome&& outcome) {
        answers += outcome.response.status == 200 ? 1 : 0;
    };
    polite.Submit(Get(kRoot), count);
    polite.Submit(Get(kRoot), count);
    while (polite.Step(Milliseconds(100))) {
    }
    EXPECT_EQ(answers, 2);
    EXPECT_EQ(bmc.Counts().handshakes, 1);
}

TEST(ConnectionUseTest, Ipv6AddressIsReached) {
    BmcOptions options = SmallBmc();
    options.listen_ipv6 = true;
    const BmcSimulator bmc(options);
    CurlSettings settings = SettingsFor(bmc);
    settings.host = "::1";
    const HttpOutcome outcome = AskOnce(settings, Get(kRoot));
    EXPECT_EQ(outcome.response.status, 200) << outcome.error.text;
}

TEST(ConnectionUseTest, SequentialRequestsShareOneConnection) {
    const BmcSimulator bmc(SmallBmc());
    CurlTransport transport(SettingsFor(bmc));
    for (int index = 0; index < 10; ++index) {
        const HttpOutcome outcome = Ask(transport, Get(kRoot));
        EXPECT_EQ(outcome.response.status, 200);
        EXPECT_EQ(outcome.response.is_reused_connection, index > 0);
        EXPECT_EQ(outcome.response.connect_time.count() == 0, index > 0);
    }
    EXPECT_EQ(bmc.Counts().connections, 1);
    EXPECT_EQ(bmc.Counts().handshakes, 1);
    EXPECT_EQ(bmc.Counts().requests, 10);
}

TEST(ConnectionUseTest, NeverMoreThanThreeConnectionsByDefault) {
    BmcOptions options = SmallBmc();
    options.latency = std::chrono::milliseconds(20);
    const BmcSimulator bmc(options);
    CurlTransport transport(SettingsFor(bmc));
    for (const HttpOutcome& outcome : AskAll(transport, std::vector<HttpRequest>(12, Get(kRoot)))) {
        EXPECT_EQ(outcome.response.status, 200) << outcome.error.text;
    }
    EXPECT_EQ(bmc.Counts().connections, 3);
    EXPECT_EQ(bmc.Counts().most_in_flight, 3);
}

TEST(ConnectionUseTest, ConnectionsStayWarmForTheNextRound) {
    BmcOptions options = SmallBmc();
    options.latency = std::chrono::milliseconds(20);
    const BmcSimulator bmc(options);
    CurlTransport transport(SettingsFor(bmc));
    const std::vector<HttpRequest> round(6, Get(kRoot));
    AskAll(transport, round);
    AskAll(transport, round);
    EXPECT_EQ(bmc.Counts().connections, 3);
    EXPECT_EQ(bmc.Counts().requests, 12);
}

TEST(ConnectionUseTest, LowerLimitHoldsForLaterRequests) {
    BmcOptions options = SmallBmc();
    options.latency = std::chrono::milliseconds(10);
    const BmcSimulator bmc(options);
    CurlTransport transport(SettingsFor(bmc));
    transport.SetMaxConnections(1);
    AskAll(transport, std::vector<HttpRequest>(4, Get(kRoot)));
    EXPECT_EQ(bmc.Counts().connections, 1);
    EXPECT_EQ(bmc.Counts().most_in_flight, 1);
}

TEST(ConnectionUseTest, DroppedIdleConnectionsAreNotUsedAgain) {
    const BmcSimulator bmc(SmallBmc());
    CurlTransport transport(SettingsFor(bmc));
    Ask(transport, Get(kRoot));
    transport.DropIdleConnections();
    EXPECT_FALSE(Ask(transport, Get(kRoot)).response.is_reused_connection);
    EXPECT_TRUE(Ask(transport, Get(kRoot)).response.is_reused_connection);
    EXPECT_EQ(bmc.Counts().connections, 2);
}

TEST(ConnectionUseTest, ClosedPortIsAConnectFailure) {
    int port = 0;
    {
        const BmcSimulator gone(SmallBmc());
        port = gone.Port();
    }
    CurlSettings settings;
    settings.host = "127.0.0.1";
    settings.port = port;
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kConnect);
}

TEST(ConnectionUseTest, SlowHandshakeIsAConnectTimeout) {
    BmcOptions options = SmallBmc();
    options.handshake_delay = std::chrono::seconds(30);
    const BmcSimulator bmc(options);
    CurlSettings settings = SettingsFor(bmc);
    settings.connect_timeout = Milliseconds(300);
    EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kConnectTimeout);
}

TEST(ConnectionUseTest, MalformedHostIsABadAddress) {
    for (const char* host : {"", "a b", "127.0.0.1/x", "user@127.0.0.1", "a\nb"}) {
        CurlSettings settings;
        settings.host = host;
        EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kBadAddress) << host;
    }
}

TEST(ConnectionUseTest, PortOutOfRangeIsABadAddress) {
    for (const int port : {0, -1, 65536}) {
        CurlSettings settings;
        settings.host = "127.0.0.1";
        settings.port = port;
        EXPECT_EQ(AskOnce(settings, Get(kRoot)).error.kind, HttpErrorKind::kBadAddress) << port;
    }
}

TEST(ConnectionUseTest, HandlerMaySubmitTheNextRequest) {
    const BmcSimulator bmc(SmallBmc());
    CurlTransport transport(SettingsFor(bmc));
    int status = 0;
    transport.Submit(Get(kRoot), [&](HttpOutcome&&) {
        transport.Submit(Get(kRoot),
                         [&](HttpOutcome&& outcome) { status = outcome.response.status; });
    });
    while (transport.Step(Milliseconds(1000))) {
    }
    EXPECT_EQ(status, 200);
}

TEST(ConnectionUseTest, AbortedRequestsNeverCallTheirHandlers) {
    const BmcSimulator bmc([] {
        BmcOptions options = SmallBmc();
        options.faults = {Always(FaultOf(simulators::Fault::Kind::kSilent))};
        return options;
    }());
    CurlTransport transport(SettingsFor(bmc));
    int calls = 0;
    transport.Submit(Get(kRoot), [&calls](HttpOutcome&&) { ++calls; });
    transport.Step(Milliseconds(50));
    transport.Abort(AbortScope::kReads);
    EXPECT_FALSE(transport.Step(Milliseconds(50)));
    EXPECT_EQ(calls, 0);
}

TEST(ConnectionUseTest, AbortOfReadsLetsAPostGoOn) {
    BmcOptions options = SmallBmc();
    options.latency = std::chrono::milliseconds(50);
    const BmcSimulator bmc(options);
    CurlTransport transport(SettingsFor(bmc));
    int status = 0;
    const std::string login = R"({"UserName":"demo","Password":"demo-pass-1"})";
    transport.Submit(PostTo("/redfish/v1/SessionService/Sessions", login),
                     [&](HttpOutcome&& outcome) { status = outcome.response.status; });
    transport.Step(Milliseconds(5));
    transport.Abort(AbortScope::kReads);
    while (transport.Step(Milliseconds(1000))) {
    }
    EXPECT_EQ(status, 201);
}

TEST(ConnectionUseTest, TransportMayDieWithRequestsInFlight) {
    BmcOptions options = SmallBmc();
    options.faults = {Always(FaultOf(simulators::Fault::Kind::kSilent))};
    const BmcSimulator bmc(options);
    bool was_called = false;
    {
        CurlTransport transport(SettingsFor(bmc));
        transport.Submit(Get(kRoot), [&](HttpOutcome&&) { was_called = true; });
        transport.Step(Milliseconds(50));
    }
    EXPECT_FALSE(was_called);
}

}  // namespace
}  // namespace Vantix::transport
