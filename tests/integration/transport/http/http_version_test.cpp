// Which version of HTTP is spoken.
#include <gtest/gtest.h>

#include "integration/transport/http/broken_http2_server.h"
#include "integration/transport/http/http_client.h"

namespace Vantix::transport {
namespace {

CurlSettings InsecureSettings(const BrokenHttp2Server& server) {
    CurlSettings settings;
    settings.host = "127.0.0.1";
    settings.port = server.Port();
    settings.verify_certificate = false;
    return settings;
}

TEST(HttpVersionTest, BrokenHttp2IsFollowedByHttp1) {
    const BrokenHttp2Server server;
    const HttpOutcome outcome = AskOnce(InsecureSettings(server), Get(kRoot));
    EXPECT_EQ(outcome.response.status, 200)
        << static_cast<int>(outcome.error.kind) << outcome.error.text;
    EXPECT_EQ(outcome.response.body, "{}");
    EXPECT_EQ(server.Http2Connections(), 1);
    EXPECT_EQ(server.Http1Requests(), 1);
}

TEST(HttpVersionTest, Http2IsNotTriedAgainAfterItFailed) {
    const BrokenHttp2Server server;
    CurlTransport transport(InsecureSettings(server));
    for (int index = 0; index < 3; ++index) {
        EXPECT_EQ(Ask(transport, Get(kRoot)).response.status, 200);
    }
    EXPECT_EQ(server.Http2Connections(), 1);
    EXPECT_EQ(server.Http1Requests(), 3);
}

TEST(HttpVersionTest, PostIsNotRepeatedOverTheOtherVersion) {
    const BrokenHttp2Server server;
    CurlTransport transport(InsecureSettings(server));
    EXPECT_FALSE(Ask(transport, PostTo(kRoot, "{}")).Answered());
    EXPECT_EQ(server.Http1Requests(), 0);
    EXPECT_EQ(Ask(transport, Get(kRoot)).response.status, 200);
}

TEST(HttpVersionTest, ServiceWithoutHttp2IsSpokenToInHttp1) {
    const simulators::BmcSimulator bmc(SmallBmc());
    EXPECT_EQ(AskOnce(SettingsFor(bmc), Get(kRoot)).response.status, 200);
    EXPECT_EQ(bmc.Counts().handshakes, 1);
}

}  // namespace
}  // namespace Vantix::transport
