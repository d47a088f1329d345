#include "platform/redfish/firmware_survey.h"

#include <gmock/gmock.h>

#include "support/scripted_channel.h"

namespace Vantix::redfish {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using transport::CollectionOf;
using transport::Json;
using transport::LinkTo;
using transport::Refusal;
using transport::Status;
using VantixConnection::SourceState;

constexpr const char* kStandard = "/redfish/v1/UpdateService/FirmwareInventory";

class FirmwareSurveyTest : public ScriptedChannelTest {
  protected:
    // A service with an update service at `path` (empty: no link), without systems and chassis.
    void OfferService(const std::string& path) {
        std::string root = R"({"Systems":{"@odata.id":"/s"},"Managers":{"@odata.id":"/m"})";
        if (!path.empty()) root += R"(,"UpdateService":)" + LinkTo(path);
        OfferRoot(root + "}");
        Offer("/s", CollectionOf({}));
        Offer("/m", CollectionOf({}));
        ExpectLogin();
    }

    const ServerSnapshot& Read() {
        EXPECT_FALSE(Open());
        return Channel().Inventory();
    }

    void TearDown() override { Release(); }
};

TEST_F(FirmwareSurveyTest, StandardPlaceIsAskedWithoutTheUpdateService) {
    OfferService("/redfish/v1/UpdateService");
    Offer(kStandard, CollectionOf({"/f/1"}));
    Offer("/f/1", R"({"Id":"1"})");
    EXPECT_THAT(Paths(Read().firmware), ElementsAre("/f/1"));
    EXPECT_EQ(Source(kFirmwareSource).state, SourceState::kComplete);
    EXPECT_TRUE(Source(kFirmwareSource).required);
}

TEST_F(FirmwareSurveyTest, MissingLinkMeansTheStandardPath) {
    OfferService("");
    Offer(kStandard, CollectionOf({"/f/1"}));
    Offer("/f/1", R"({"Id":"1"})");
    EXPECT_THAT(Paths(Read().firmware), ElementsAre("/f/1"));
}

TEST_F(FirmwareSurveyTest, LinkWinsOverThePlaceThatWasAskedAhead) {
    OfferService("/u");
    peer_.On("GET /u/FirmwareInventory", Status(404));
    Offer("/u", R"({"FirmwareInventory":{"@odata.id":"/elsewhere"}})");
    Offer("/elsewhere", CollectionOf({"/f/1"}));
    Offer("/f/1", R"({"Id":"1"})");
    EXPECT_THAT(Paths(Read().firmware), ElementsAre("/f/1"));
    EXPECT_EQ(Source(kFirmwareSource).state, SourceState::kComplete);
}

TEST_F(FirmwareSurveyTest, InventoryLinkedByTheMakerAloneIsFound) {
    OfferService("/u");
    peer_.On("GET /u/FirmwareInventory", Status(404));
    Offer("/u", R"({"Oem":{"Other":7,"Maker":{"FirmwareInventory":{"@odata.id":"/oem"}}}})");
    Offer("/oem", CollectionOf({"/f/1"}));
    Offer("/f/1", R"({"Id":"1"})");
    EXPECT_THAT(Paths(Read().firmware), ElementsAre("/f/1"));
}

class NoUpdateServiceTest : public FirmwareSurveyTest, public ::testing::WithParamInterface<int> {};

TEST_P(NoUpdateServiceTest, IsUnsupportedAndNotRequired) {
    OfferService("/u");
    peer_.Always("GET /u/FirmwareInventory", Status(GetParam()));
    peer_.Always("GET /u", Status(GetParam()));
    Read();
    EXPECT_EQ(Source(kFirmwareSource).state, SourceState::kUnsupported);
    EXPECT_FALSE(Source(kFirmwareSource).required);
    EXPECT_THAT(Source(kFirmwareSource).detail, HasSubstr(std::to_string(GetParam())));
    EXPECT_FALSE(option_.run->IsPartial());
}

INSTANTIATE_TEST_SUITE_P(All, NoUpdateServiceTest, ::testing::Values(404, 405, 500, 501));

TEST_F(FirmwareSurveyTest, InventoryThatFailsBesideAWorkingServiceIsAGap) {
    OfferService("/u");
    peer_.Always("GET /u/FirmwareInventory", Status(500));
    Offer("/u", R"({"FirmwareInventory":{"@odata.id":"/u/FirmwareInventory"}})");
    Read();
    EXPECT_EQ(Source(kFirmwareSource).state, SourceState::kFailed);
    EXPECT_TRUE(option_.run->IsPartial());
}

TEST_F(FirmwareSurveyTest, ForbiddenInventoryIsDenied) {
    OfferService("/u");
    peer_.Always("GET /u/FirmwareInventory", Refusal(403));
    peer_.Always("GET /u", Refusal(403));
    Read();
    EXPECT_EQ(Source(kFirmwareSource).state, SourceState::kDenied);
}

TEST_F(FirmwareSurveyTest, SoftwareInventoryIsReadWhereTheFirmwareInventoryIsEmpty) {
    OfferService("/u");
    Offer("/u/FirmwareInventory", CollectionOf({}));
    Offer("/u", R"({"SoftwareInventory":{"@odata.id":"/u/SoftwareInventory"}})");
    Offer("/u/SoftwareInventory", CollectionOf({"/w/1"}));
    Offer("/w/1", R"({"Id":"1"})");
    EXPECT_THAT(Paths(Read().software), ElementsAre("/w/1"));
}

TEST_F(FirmwareSurveyTest, MembersOfWhichSomeFailArePartial) {
    OfferService("/u");
    Offer("/u/FirmwareInventory", CollectionOf({"/f/1", "/f/2"}));
    Offer("/f/1", R"({"Id":"1"})");
    peer_.On("GET /f/2", Status(404));
    Read();
    EXPECT_EQ(Source(kFirmwareSource).state, SourceState::kPartial);
    EXPECT_EQ(Source(kFirmwareSource).items_read, 1);
    EXPECT_EQ(Source(kFirmwareSource).items_failed, 1);
    EXPECT_TRUE(Channel().IsInventoryPartial());
}

// ---- services that have just started ------------------------------------------------------------

class FreshServiceTest : public FirmwareSurveyTest {
  protected:
    FreshServiceTest() {
        OfferRoot(R"({"Systems":{"@odata.id":"/s"},"Managers":{"@odata.id":"/m"},)"
                  R"("UpdateService":{"@odata.id":"/u"}})");
        ExpectLogin();
        Offer("/s", CollectionOf({}));
        Offer("/m", CollectionOf({"/m/1"}));
        Offer("/m/1", R"({"Id":"1","DateTime":"2025-03-11T08:16:00Z",)"
                      R"("LastResetTime":"2025-03-11T08:15:30Z"})");
    }
    void OfferInventory(const std::vector<std::string>& paths) {
        Offer("/u/FirmwareInventory", CollectionOf(paths));
        for (const auto& path : paths) Offer(path, R"({"Id":"x"})");
    }
};

TEST_F(FreshServiceTest, IsReadUntilTwoCountsAgree) {
    OfferInventory({"/f/1"});
    OfferInventory({"/f/1", "/f/2"});
    OfferInventory({"/f/1", "/f/2"});
    const auto start = clock_.Now();
    EXPECT_THAT(Paths(Read().firmware), ElementsAre("/f/1", "/f/2"));
    EXPECT_GE(clock_.Since(start), transport::Milliseconds(6000));
}

TEST_F(FreshServiceTest, IsNotReadForEver) {
    for (int round = 1; round <= 6; ++round) {
        std::vector<std::string> paths;
        for (int member = 0; member < round; ++member) {
            paths.push_back("/f/" + std::to_string(member));
        }
        OfferInventory(paths);
    }
    EXPECT_EQ(Read().firmware.size(), 6U);
}

TEST_F(FreshServiceTest, FailedSecondReadingKeepsTheFirst) {
    OfferInventory({"/f/1"});
    peer_.Always("GET /u/FirmwareInventory", Status(404));
    EXPECT_THAT(Paths(Read().firmware), ElementsAre("/f/1"));
    EXPECT_FALSE(Channel().InventoryFailure());
    EXPECT_EQ(Source(kFirmwareSource).state, SourceState::kComplete);
}

TEST_F(FreshServiceTest, CancelledWaitIsNotSpent) {
    OfferInventory({"/f/1"});
    EXPECT_FALSE(Open());
    option_.run->on_activity = [this](const std::string& text) {
        if (text.find("settle") != std::string::npos) option_.run->Cancel();
    };
    EXPECT_THAT(Paths(Channel().Inventory().firmware), ElementsAre("/f/1"));
}

}  // namespace
}  // namespace Vantix::redfish
