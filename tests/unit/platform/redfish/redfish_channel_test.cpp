#include "platform/redfish/redfish_channel.h"

#include <gmock/gmock.h>

#include "common/result/result_codes.h"
#include "platform/redfish/enclosure_manager.h"
#include "support/scripted_channel.h"

namespace Vantix::redfish {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using transport::CollectionOf;
using transport::HttpErrorKind;
using transport::Json;
using transport::RedfishProblem;
using transport::Silence;
using transport::Status;

constexpr const char* kRoot = R"({"Systems":{"@odata.id":"/s"},"Managers":{"@odata.id":"/m"},)"
                              R"("UpdateService":{"@odata.id":"/u"}})";

class RedfishChannelTest : public ScriptedChannelTest {
  protected:
    void OfferServer(const std::string& system = R"({"Id":"1","Model":"M","SerialNumber":"S"})") {
        OfferRoot(kRoot);
        ExpectLogin();
        Offer("/s", CollectionOf({"/s/1"}));
        Offer("/s/1", system);
        Offer("/m", CollectionOf({"/m/1"}));
        Offer("/m/1", R"({"Id":"1"})");
        Offer("/u/FirmwareInventory", CollectionOf({"/f/1"}));
        Offer("/f/1", R"({"Id":"1"})");
    }
    std::string LastLine() const { return peer_.Lines().empty() ? "" : peer_.Lines().back(); }
};

TEST_F(RedfishChannelTest, FactsAndInventoryAreReadOnceForAllQuestions) {
    OfferServer();
    EXPECT_FALSE(Open());
    EXPECT_EQ(Channel().Managed().machine_type, "M");
    EXPECT_EQ(Channel().Managed().serial_number, "S");
    EXPECT_EQ(Channel().Inventory().firmware.size(), 1U);
    EXPECT_EQ(Channel().Inventory().firmware.size(), 1U);
    Release();
    EXPECT_EQ(LastLine(), transport::kLogOut);
}

TEST_F(RedfishChannelTest, FactsAloneReadNoInventory) {
    option_.facts_only = true;
    OfferRoot(kRoot);
    ExpectLogin();
    Offer("/s", CollectionOf({"/s/1"}));
    Offer("/s/1", R"({"Id":"1","Model":"M"})");
    Offer("/m", CollectionOf({}));
    EXPECT_FALSE(Open());
    EXPECT_EQ(Channel().Managed().machine_type, "M");
    EXPECT_THAT(Channel().Inventory().firmware, IsEmpty());
    Release();
}

TEST_F(RedfishChannelTest, PoweredOffHostIsNoted) {
    OfferServer(R"({"Id":"1","PowerState":"Off"})");
    EXPECT_FALSE(Open());
    Channel().Inventory();
    EXPECT_THAT(option_.run->Notices(), Contains(HasSubstr("powered off")));
    Release();
}

TEST_F(RedfishChannelTest, UnknownSystemIdIsNoted) {
    option_.system_id = "other";
    OfferServer();
    EXPECT_FALSE(Open());
    Channel().Inventory();
    EXPECT_THAT(option_.run->Notices(), Contains(HasSubstr("other")));
    Release();
}

TEST_F(RedfishChannelTest, UnreadableSystemsAreToldAsTheFailureOfTheFacts) {
    OfferRoot(kRoot);
    ExpectLogin();
    peer_.On("GET /s", Status(404));
    Offer("/m", CollectionOf({}));
    peer_.Always("GET /u/FirmwareInventory", Status(404)).Always("GET /u", Status(404));
    EXPECT_FALSE(Open());
    Channel().Managed();
    EXPECT_EQ(Channel().FactsFailure().problem, RedfishProblem::kNotFound);
    Release();
}

// ---- ways out ---------------------------------------------------------------------------------

TEST_F(RedfishChannelTest, FailedOpenAfterTheLoginEndsTheSession) {
    peer_.On(transport::kAskRoot, Status(200, "<html>"));
    ExpectLogin();
    EXPECT_EQ(Open().problem, RedfishProblem::kBadBody);
    Release();
    EXPECT_EQ(LastLine(), transport::kLogOut);
}

TEST_F(RedfishChannelTest, ReleaseWhileReadingAbandonsTheReadsAndEndsTheSession) {
    OfferRoot(kRoot);
    ExpectLogin();
    for (const char* line : {"GET /s", "GET /m", "GET /u/FirmwareInventory"}) {
        peer_.Always(line, Silence());
    }
    EXPECT_FALSE(Open());
    Release();
    EXPECT_EQ(LastLine(), transport::kLogOut);
    EXPECT_EQ(peer_.TimesAsked("GET /u"), 0);
    EXPECT_EQ(peer_.InFlight(), 0U);
}

TEST_F(RedfishChannelTest, CancelledScanStopsWaitingAndEndsTheSession) {
    OfferRoot(kRoot);
    ExpectLogin();
    for (const char* line : {"GET /s", "GET /m", "GET /u/FirmwareInventory"}) {
        peer_.Always(line, Silence());
    }
    EXPECT_FALSE(Open());
    option_.run->Cancel();
    Channel().Inventory();
    EXPECT_EQ(Channel().FactsFailure().transport, HttpErrorKind::kCancelled);
    Release();
    EXPECT_EQ(LastLine(), transport::kLogOut);
}

TEST_F(RedfishChannelTest, UsedUpTimeEndsTheSession) {
    OfferRoot(kRoot);
    ExpectLogin();
    for (const char* line : {"GET /s", "GET /m", "GET /u/FirmwareInventory"}) {
        peer_.Always(line, Silence());
    }
    EXPECT_FALSE(Open());
    Channel().Inventory();
    EXPECT_EQ(Channel().FactsFailure().transport, HttpErrorKind::kDeadline);
    Release();
    EXPECT_EQ(LastLine(), transport::kLogOut);
}

TEST_F(RedfishChannelTest, FailedLogOutIsANotice) {
    OfferServer();
    peer_.ExpectNothingMore();
    OfferRoot(kRoot);
    peer_.On(transport::kLogIn, transport::SessionMade());
    peer_.On(transport::kLogOut, Status(500));
    for (const char* line : {"GET /s", "GET /m", "GET /u/FirmwareInventory"}) {
        peer_.Always(line, Json(CollectionOf({})));
    }
    EXPECT_FALSE(Open());
    Release();
    EXPECT_THAT(option_.run->Notices(), Contains(HasSubstr("could not be ended")));
}

// ---- single questions ---------------------------------------------------------------------------

struct StartingRow {
    const char* name;
    transport::ScriptedReply reply;
    bool is_starting;
};

class IsStartingTest : public RedfishChannelTest,
                       public ::testing::WithParamInterface<StartingRow> {};

TEST_P(IsStartingTest, IsToldByOneRequest) {
    OfferServer();
    peer_.On("GET /q", GetParam().reply);
    EXPECT_FALSE(Open());
    EXPECT_EQ(Channel().IsStarting("/q"), GetParam().is_starting);
    Channel().Inventory();
    Release();
}

INSTANTIATE_TEST_SUITE_P(
    All, IsStartingTest,
    ::testing::Values(StartingRow{"Running", Json("{}"), false},
                      StartingRow{"Missing", Status(404), false},
                      StartingRow{"Timeout", transport::Broken(HttpErrorKind::kTimeout), false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(RedfishChannelTest, MemoryIsReadOnTheFirstQuestionOnly) {
    OfferServer(R"({"Id":"1","Memory":{"@odata.id":"/mem"}})");
    Offer("/mem", CollectionOf({"/mem/1"}));
    Offer("/mem/1", R"({"Id":"1"})");
    EXPECT_FALSE(Open());
    EXPECT_EQ(Channel().Memory().memory.size(), 1U);
    EXPECT_EQ(Channel().Memory().memory.size(), 1U);
    Channel().Inventory();
    Release();
}

TEST_F(RedfishChannelTest, ServiceWithSystemsIsNoEnclosureManager) {
    OfferServer();
    EXPECT_FALSE(Open());
    EXPECT_FALSE(IsEnclosureManager(Channel()));
    Channel().Inventory();
    Release();
}

TEST_F(RedfishChannelTest, ConnectionsOfOtherKindsHaveNoChannel) {
    VantixConnection::ConnectionInfo connection;
    connection.connect_case = VantixConnection::kConnectCaseCim;
    connection.channel = std::make_shared<int>(7);
    EXPECT_EQ(RedfishChannel::Of(connection), nullptr);
}

}  // namespace
}  // namespace Vantix::redfish
