#include "transport/cim_xml/cim_client.h"

#include <gtest/gtest.h>

#include "cim_text.h"
#include "support/conversation_transport.h"

namespace Vantix::transport {
namespace {

constexpr const char* kPost = "POST /cimom";
constexpr const char* kFirstId = "1001";

class CimClientTest : public ::testing::Test {
  protected:
    CimSettings Settings() {
        CimSettings settings;
        settings.credentials = {"demo", "demo-pass-1"};
        settings.may_log_in = [this] { return may_log_in_; };
        settings.on_login_refused = [this](const std::string& what) { refusals_.push_back(what); };
        return settings;
    }
    CimAnswer Ask(CimClient& client) {
        return client.Call(EnumerateInstancesCall("root/cimv2", "CIM_SoftwareIdentity"));
    }
    CimAnswer AskOnce() {
        CimClient client(peer_, Settings());
        return Ask(client);
    }

    ConversationTransport peer_;
    bool may_log_in_ = true;
    std::vector<std::string> refusals_;
};

TEST_F(CimClientTest, RequestCarriesHeadersLoginAndBody) {
    peer_.On(kPost, Status(200, Returned("", kFirstId)));

    EXPECT_FALSE(AskOnce().failure);

    const HttpRequest request = peer_.Request(kPost);
    EXPECT_EQ(ConversationTransport::Header(request, "CIMMethod"), "EnumerateInstances");
    EXPECT_EQ(ConversationTransport::Header(request, "CIMOperation"), "MethodCall");
    EXPECT_EQ(request.basic, (std::pair<std::string, std::string>{"demo", "demo-pass-1"}));
    EXPECT_NE(request.body.find("CIM_SoftwareIdentity"), std::string::npos);
}

TEST_F(CimClientTest, WithoutCredentialsNoLoginIsSent) {
    peer_.On(kPost, Status(200, Returned("", kFirstId)));
    CimClient client(peer_, CimSettings());

    EXPECT_FALSE(Ask(client).failure);
    EXPECT_FALSE(peer_.Request(kPost).basic.has_value());
}

TEST_F(CimClientTest, EveryRequestHasItsOwnMessageNumber) {
    peer_.On(kPost, Status(200, Returned("", "1001"))).On(kPost, Status(200, Returned("", "1002")));
    CimClient client(peer_, Settings());

    EXPECT_FALSE(Ask(client).failure);
    EXPECT_FALSE(Ask(client).failure);
}

TEST_F(CimClientTest, LateAnswerToAnEarlierRequestIsNotTaken) {
    peer_.On(kPost, Status(200, Returned(NamedInstance("i"), "1000")));

    EXPECT_EQ(AskOnce().failure.problem, CimProblem::kBadBody);
}

TEST_F(CimClientTest, RefusedLoginIsToldAndNeverRepeated) {
    peer_.On(kPost, Status(401));
    CimClient client(peer_, Settings());

    EXPECT_EQ(Ask(client).failure.problem, CimProblem::kUnauthorized);
    EXPECT_EQ(Ask(client).failure.problem, CimProblem::kLoginBarred);
    EXPECT_EQ(refusals_.size(), 1U);
    EXPECT_EQ(peer_.TimesAsked(kPost), 1);
}

TEST_F(CimClientTest, SpentBudgetSendsNothing) {
    may_log_in_ = false;

    EXPECT_EQ(AskOnce().failure.problem, CimProblem::kLoginBarred);
    EXPECT_TRUE(peer_.Requests().empty());
}

TEST_F(CimClientTest, MissingLoginIsNoRefusedOne) {
    peer_.On(kPost, Status(401));
    CimSettings settings = Settings();
    settings.credentials.reset();
    CimClient client(peer_, settings);

    EXPECT_EQ(Ask(client).failure.problem, CimProblem::kUnauthorized);
    EXPECT_TRUE(refusals_.empty());
}

TEST_F(CimClientTest, TicketOfAnyLengthIsSentAsItIs) {
    peer_.On(kPost, Status(200, Returned("", kFirstId)));
    const std::string ticket(3000, 't');
    CimSettings settings = Settings();
    settings.credentials = {ticket, ticket};
    CimClient client(peer_, settings);

    EXPECT_FALSE(Ask(client).failure);
    EXPECT_EQ(peer_.Request(kPost).basic->first, ticket);
}

TEST_F(CimClientTest, BrokenConnectionIsTriedOnceMore) {
    for (const HttpErrorKind kind :
         {HttpErrorKind::kReset, HttpErrorKind::kTruncated, HttpErrorKind::kProtocol}) {
        ConversationTransport peer;
        peer.On(kPost, Broken(kind)).On(kPost, Status(200, Returned("", kFirstId)));
        CimClient client(peer, Settings());
        EXPECT_FALSE(Ask(client).failure);
        EXPECT_EQ(client.Requests(), 2);
    }
}

TEST_F(CimClientTest, SecondBreakIsFinal) {
    peer_.On(kPost, Broken(HttpErrorKind::kReset)).On(kPost, Broken(HttpErrorKind::kReset));

    const CimAnswer answer = AskOnce();

    EXPECT_EQ(answer.failure.problem, CimProblem::kNotReached);
    EXPECT_EQ(answer.failure.transport, HttpErrorKind::kReset);
}

TEST_F(CimClientTest, NothingElseIsRepeated) {
    for (const HttpErrorKind kind :
         {HttpErrorKind::kTimeout, HttpErrorKind::kConnect, HttpErrorKind::kConnectTimeout,
          HttpErrorKind::kUntrusted, HttpErrorKind::kDeadline, HttpErrorKind::kCancelled}) {
        ConversationTransport peer;
        peer.On(kPost, Broken(kind));
        CimClient client(peer, Settings());
        EXPECT_EQ(Ask(client).failure.transport, kind);
        EXPECT_EQ(client.Requests(), 1);
    }
}

TEST_F(CimClientTest, UnavailableServiceIsNotAskedAgain) {
    peer_.On(kPost, Status(503));

    const CimAnswer answer = AskOnce();

    EXPECT_EQ(answer.failure.problem, CimProblem::kHttpStatus);
    EXPECT_EQ(answer.failure.text, "HTTP status 503");
}

TEST_F(CimClientTest, ErrorHeadersAreToldDecoded) {
    peer_.On(kPost, Status(400)
                        .With("cimerror", "request-not-well-formed")
                        .With("pgerrordetail", "bad%20token%20here"));

    EXPECT_EQ(AskOnce().failure.text, "HTTP status 400, request-not-well-formed; bad token here");
}

TEST_F(CimClientTest, StatusWithoutErrorHeaderShowsTheBodysStart) {
    peer_.On(kPost, Status(500, "  oops \n now").With("content-type", "text/plain"));

    EXPECT_EQ(AskOnce().failure.text, "HTTP status 500, text/plain: oops   now");
}

TEST_F(CimClientTest, WebServerIsNoCimService) {
    for (const int status : {301, 404, 405, 501}) {
        ConversationTransport peer;
        peer.On(kPost, Status(status, "<html/>"));
        CimClient client(peer, Settings());
        EXPECT_EQ(Ask(client).failure.problem, CimProblem::kNoService) << status;
    }
}

TEST_F(CimClientTest, CimServiceThatRefusesAnOperationIsStillAService) {
    peer_.On(kPost, Status(501).With("cimerror", "unsupported-operation"));

    EXPECT_EQ(AskOnce().failure.problem, CimProblem::kHttpStatus);
}

TEST_F(CimClientTest, ForbiddenIsNoRefusedPassword) {
    peer_.On(kPost, Status(403));

    EXPECT_EQ(AskOnce().failure.problem, CimProblem::kForbidden);
    EXPECT_TRUE(refusals_.empty());
}

TEST_F(CimClientTest, AnyXmlContentTypeIsAccepted) {
    for (const std::string type : {"text/xml", "application/xml", "text/html", ""}) {
        ConversationTransport peer;
        peer.On(kPost, Status(200, Returned("", kFirstId)).With("content-type", type));
        CimClient client(peer, Settings());
        EXPECT_FALSE(Ask(client).failure) << type;
    }
}

TEST_F(CimClientTest, TrailersErrorGoesIntoTheMessage) {
    peer_.On(kPost, Status(200, "").With("cimerror", "provider%20died"));

    EXPECT_EQ(AskOnce().failure.text, "the answer is empty (provider died)");
}

}  // namespace
}  // namespace Vantix::transport
