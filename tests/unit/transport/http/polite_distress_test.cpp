#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "unit/transport/http/polite_transport_fixture.h"

namespace Vantix::transport {
namespace {

using std::chrono::seconds;

class DistressStatusTest : public PoliteTransportTest, public ::testing::WithParamInterface<int> {};

TEST_P(DistressStatusTest, BringsDownToOneRequestInFlight) {
    inner_.answer = [this](const HttpRequest& request, int earlier) {
        if (request.target == "/bad" && earlier == 0) {
            return Status(GetParam());
        }
        EXPECT_TRUE(!Polite().IsDistressed() || inner_.in_flight.size() == 1U);
        return Status(200);
    };
    Send(Get("/bad"));
    for (int index = 0; index < 9; ++index) {
        Send(Get("/" + std::to_string(index)));
    }
    Run();
    EXPECT_TRUE(Polite().IsDistressed());
    EXPECT_EQ(calls_.size(), 10U);
}

INSTANTIATE_TEST_SUITE_P(PoliteTransport, DistressStatusTest,
                         ::testing::Values(403, 429, 500, 502, 503, 504));

TEST_F(PoliteTransportTest, OrdinaryRefusalIsNoDistress) {
    inner_.answer = [](const HttpRequest&, int) { return Status(404); };
    Send(Get("/a"));
    Run();
    EXPECT_FALSE(Polite().IsDistressed());
}

TEST_F(PoliteTransportTest, ResetIsDistress) {
    inner_.answer = [](const HttpRequest&, int) { return Failure(HttpErrorKind::kReset); };
    Send(Get("/a"));
    Run();
    EXPECT_TRUE(Polite().IsDistressed());
}

TEST_F(PoliteTransportTest, RefusalAmidOthersIsAskedAgainAlone) {
    inner_.answer = [this](const HttpRequest&, int earlier) {
        if (earlier == 0) {
            return Status(403);
        }
        EXPECT_EQ(inner_.in_flight.size(), 1U);
        return Status(200);
    };
    Send(Get("/a"));
    Send(Get("/b"));
    Send(Get("/c"));
    Run();
    EXPECT_EQ(inner_.sent.size(), 6U);
    EXPECT_EQ(outcomes_["/a"].response.status, 200);
    EXPECT_EQ(outcomes_["/c"].response.status, 200);
}

TEST_F(PoliteTransportTest, RefusalAmidOthersIsAskedAgainOnlyOnce) {
    inner_.answer = [](const HttpRequest&, int) { return Status(403); };
    Send(Get("/a"));
    Send(Get("/b"));
    Run();
    EXPECT_EQ(inner_.TimesSent("/a"), 2);
    EXPECT_EQ(outcomes_["/a"].response.status, 403);
}

}  // namespace
}  // namespace Vantix::transport
