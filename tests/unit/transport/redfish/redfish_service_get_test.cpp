// Reading with an established login: tokens, time limits, and the one new login of a scan.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/redfish_talk.h"
#include "transport/redfish/redfish_service.h"

namespace Vantix::transport {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

RedfishSettings Settings() {
    RedfishSettings settings;
    settings.credentials = {"scanner", "invented-password"};
    settings.request_timeout = Milliseconds(60001);
    settings.inventory_timeout = Milliseconds(240001);
    return settings;
}

class RedfishServiceGetTest : public ::testing::Test {
  protected:
    explicit RedfishServiceGetTest(RedfishSettings settings = Settings())
        : service_(peer_, std::move(settings)) {
        peer_.On(kAskRoot, Json("{}")).On(kLogIn, SessionMade("first"));
        EXPECT_FALSE(service_.Open());
    }

    void Ask(const std::string& target, GetOptions options = {}) {
        service_.Get(target, options, [this, target](RedfishAnswer&& answer) {
            answers_.emplace_back(target, std::move(answer));
        });
    }

    void Run() {
        while (service_.Step()) {
        }
    }

    std::string TokenOf(const std::string& line, int nth = 0) const {
        return ConversationTransport::Header(peer_.Request(line, nth), "X-Auth-Token");
    }

    const RedfishAnswer& AnswerTo(const std::string& target) const {
        static const RedfishAnswer kNone;
        for (const auto& [asked, answer] : answers_) {
            if (asked == target) return answer;
        }
        ADD_FAILURE() << "no answer to " << target;
        return kNone;
    }

    ConversationTransport peer_;
    RedfishService service_;
    std::vector<std::pair<std::string, RedfishAnswer>> answers_;
};

TEST_F(RedfishServiceGetTest, CarriesTokenAndProtocolVersion) {
    peer_.On("GET /a", Json("{}"));
    Ask("/a");
    Run();
    EXPECT_EQ(TokenOf("GET /a"), "first");
    EXPECT_EQ(ConversationTransport::Header(peer_.Request("GET /a"), "OData-Version"), "4.0");
    EXPECT_EQ(ConversationTransport::Header(peer_.Request("GET /a"), "Accept"), "application/json");
}

TEST_F(RedfishServiceGetTest, HandlerIsNotCalledFromGet) {
    peer_.On("GET /a", Json("{}"));
    Ask("/a");
    EXPECT_THAT(answers_, IsEmpty());
    Run();
    EXPECT_THAT(answers_, SizeIs(1));
}

TEST_F(RedfishServiceGetTest, ExpandQueryIsSentLiterally) {
    peer_.On("GET /a?$expand=.($levels=1)", Json("{}"));
    Ask("/a?$expand=.($levels=1)");
    Run();
}

TEST_F(RedfishServiceGetTest, SlowResourcesGetTheInventoryTimeout) {
    peer_.On("GET /usual", Json("{}")).On("GET /slow", Json("{}"));
    Ask("/usual");
    Ask("/slow", {true, false, false});
    Run();
    EXPECT_EQ(peer_.Request("GET /usual").timeout, Milliseconds(60001));
    EXPECT_EQ(peer_.Request("GET /slow").timeout, Milliseconds(240001));
}

TEST_F(RedfishServiceGetTest, WhatHasAFallBackIsTriedLessOften) {
    peer_.On("GET /usual", Json("{}")).On("GET /optional", Json("{}")).On("GET /once", Json("{}"));
    Ask("/usual");
    Ask("/optional", {false, true, false});
    Ask("/once", {false, false, true});
    Run();
    EXPECT_EQ(peer_.Request("GET /usual").max_tries, 4);
    EXPECT_EQ(peer_.Request("GET /optional").max_tries, 2);
    EXPECT_EQ(peer_.Request("GET /once").max_tries, 1);
}

TEST_F(RedfishServiceGetTest, EndedSessionLeadsToOneLoginAndOneRepetition) {
    peer_.On("GET /a", Status(401)).On(kLogIn, SessionMade("second", "2"));
    peer_.On("GET /a", Json(R"({"Id":"a"})"));
    Ask("/a");
    Run();
    EXPECT_TRUE(AnswerTo("/a").Ok());
    EXPECT_EQ(TokenOf("GET /a", 1), "second");
    EXPECT_FALSE(service_.IsLoginLost());
}

TEST_F(RedfishServiceGetTest, BothSessionsAreDeletedAfterANewLogin) {
    peer_.On("GET /a", Status(401)).On(kLogIn, SessionMade("second", "2"));
    peer_.On("GET /a", Json("{}")).On(kLogOut, Status(404));
    peer_.On("DELETE /redfish/v1/SessionService/Sessions/2", Status(204));
    Ask("/a");
    Run();
    EXPECT_FALSE(service_.Close());
}

TEST_F(RedfishServiceGetTest, ParallelRefusalsShareOneNewLogin) {
    for (const char* target : {"/a", "/b", "/c"}) {
        peer_.On(std::string("GET ") + target, Status(401));
        peer_.On(std::string("GET ") + target, Json("{}"));
        Ask(target);
    }
    peer_.On(kLogIn, SessionMade("second", "2"));
    Run();
    EXPECT_THAT(answers_, SizeIs(3));
    for (const char* target : {"/a", "/b", "/c"}) EXPECT_TRUE(AnswerTo(target).Ok()) << target;
}

TEST_F(RedfishServiceGetTest, RefusalThatComesAfterTheNewLoginIsRepeatedWithItsToken) {
    // The last request is answered first: login and repetition of "b" are over before "a" ends.
    peer_.AnswerNewestFirst();
    peer_.On("GET /a", Status(401)).On("GET /b", Status(401));
    peer_.On(kLogIn, SessionMade("second", "2"));
    peer_.On("GET /b", Json("{}")).On("GET /a", Json("{}"));
    Ask("/a");
    Ask("/b");
    Run();
    EXPECT_TRUE(AnswerTo("/a").Ok());
    EXPECT_EQ(TokenOf("GET /a", 1), "second");
}

TEST_F(RedfishServiceGetTest, RequestsMadeDuringTheNewLoginWaitForIt) {
    peer_.On("GET /a", Status(401)).On(kLogIn, SessionMade("second", "2"));
    peer_.On("GET /a", Json("{}")).On("GET /b", Json("{}"));
    Ask("/a");
    service_.Step();
    Ask("/b");
    Run();
    EXPECT_EQ(TokenOf("GET /b"), "second");
}

TEST_F(RedfishServiceGetTest, SecondRefusalOfOneRequestLosesTheLogin) {
    peer_.On("GET /a", Status(401)).On(kLogIn, SessionMade("second", "2"));
    peer_.On("GET /a", Status(401));
    Ask("/a");
    Run();
    EXPECT_EQ(AnswerTo("/a").failure.problem, RedfishProblem::kUnauthorized);
    EXPECT_TRUE(service_.IsLoginLost());
}

TEST_F(RedfishServiceGetTest, SecondEndOfASessionLosesTheLogin) {
    peer_.On("GET /a", Status(401)).On(kLogIn, SessionMade("second", "2"));
    peer_.On("GET /a", Json("{}")).On("GET /b", Status(401));
    Ask("/a");
    Run();
    Ask("/b");
    Run();
    EXPECT_EQ(AnswerTo("/b").failure.problem, RedfishProblem::kUnauthorized);
    EXPECT_TRUE(service_.IsLoginLost());
    EXPECT_EQ(peer_.TimesAsked(kLogIn), 2);
}

TEST_F(RedfishServiceGetTest, RefusedNewLoginEndsEveryWaitingRequest) {
    peer_.On("GET /a", Status(401)).On("GET /b", Status(401)).On(kLogIn, Refusal(401));
    Ask("/a");
    Ask("/b");
    Run();
    ASSERT_THAT(answers_, SizeIs(2));
    EXPECT_EQ(AnswerTo("/a").failure.problem, RedfishProblem::kUnauthorized);
    EXPECT_THAT(AnswerTo("/b").failure.text, HasSubstr("GET /b"));
    EXPECT_TRUE(service_.IsLoginLost());
}

TEST_F(RedfishServiceGetTest, ForbiddenNeverLeadsToALogin) {
    peer_.On("GET /a", Refusal(403, "Base.1.0.InsufficientPrivilege"));
    Ask("/a");
    Run();
    EXPECT_EQ(AnswerTo("/a").failure.problem, RedfishProblem::kForbidden);
    EXPECT_EQ(peer_.TimesAsked(kLogIn), 1);
}

TEST_F(RedfishServiceGetTest, StepUntilStopsWhenNothingIsInFlight) {
    service_.StepUntil([] { return false; });
    SUCCEED() << "came back";
}

class SpentBudgetTest : public RedfishServiceGetTest {
  protected:
    SpentBudgetTest()
        : RedfishServiceGetTest([] {
              RedfishSettings settings = Settings();
              settings.may_log_in = [] { return false; };
              return settings;
          }()) {}
};

TEST_F(SpentBudgetTest, EndedSessionLeadsToNoLogin) {
    peer_.On("GET /a", Status(401));
    Ask("/a");
    Run();
    EXPECT_EQ(AnswerTo("/a").failure.problem, RedfishProblem::kUnauthorized);
    EXPECT_EQ(peer_.TimesAsked(kLogIn), 1);
}

class BasicGetTest : public ::testing::Test {
  protected:
    BasicGetTest() {
        RedfishSettings settings = Settings();
        settings.login = LoginMethod::kBasic;
        service_ = std::make_unique<RedfishService>(peer_, settings);
        peer_.On(kAskRoot, Json(R"({"Managers":{"@odata.id":"/m"}})")).On("GET /m", Json("{}"));
        EXPECT_FALSE(service_->Open());
    }
    ConversationTransport peer_;
    std::unique_ptr<RedfishService> service_;
};

TEST_F(BasicGetTest, EveryRequestCarriesUserAndPassword) {
    peer_.On("GET /a", Json("{}"));
    service_->Get("/a", {}, [](RedfishAnswer&&) {});
    service_->Step();
    EXPECT_EQ(peer_.Request("GET /a").basic->first, "scanner");
}

TEST_F(BasicGetTest, RefusalIsFinalAndMakesNoSession) {
    peer_.On("GET /a", Status(401));
    RedfishProblem problem = RedfishProblem::kNone;
    service_->Get("/a", {}, [&](RedfishAnswer&& answer) { problem = answer.failure.problem; });
    service_->StepUntil([&] { return problem != RedfishProblem::kNone; });
    EXPECT_EQ(problem, RedfishProblem::kUnauthorized);
    EXPECT_TRUE(service_->IsLoginLost());
}

}  // namespace
}  // namespace Vantix::transport
