#include "transport/redfish/extended_info.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantix::transport {

void PrintTo(const ServiceMessage& message, std::ostream* out) {
    *out << message.id << "|" << message.text;
}

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

auto Message(const std::string& id, const std::string& text) {
    return AllOf(Field(&ServiceMessage::id, id), Field(&ServiceMessage::text, text));
}

boost::json::object Body(const std::string& text) {
    boost::json::error_code error;
    boost::json::value value = boost::json::parse(text, error);
    EXPECT_FALSE(error) << text;
    return value.is_object() ? value.get_object() : boost::json::object();
}

std::vector<ServiceMessage> Read(const std::string& text) {
    return ReadMessages(Body(text));
}

RedfishProblem ProblemOfId(const std::string& id) {
    return ProblemOf({{id, ""}});
}
RedfishProblem ProblemOfText(const std::string& text) {
    return ProblemOf({{"", text}});
}

TEST(ExtendedInfoTest, ListBelowErrorGivesEveryMessage) {
    EXPECT_THAT(Read(R"({"error":{"code":"c","message":"m","@Message.ExtendedInfo":[
        {"MessageId":"Base.1.0.A","Message":"first"},{"MessageId":"Base.1.0.B"}]}})"),
                ElementsAre(Message("Base.1.0.A", "first"), Message("Base.1.0.B", "")));
}

TEST(ExtendedInfoTest, SingleObjectBelowErrorIsAListOfOne) {
    EXPECT_THAT(Read(R"({"error":{"@Message.ExtendedInfo":{"MessageId":"A","Message":"x"}}})"),
                ElementsAre(Message("A", "x")));
}

TEST(ExtendedInfoTest, TextInsteadOfMessageObjectIsTaken) {
    EXPECT_THAT(Read(R"({"error":{"@Message.ExtendedInfo":["only words"]}})"),
                ElementsAre(Message("", "only words")));
}

TEST(ExtendedInfoTest, TextInsteadOfListIsTaken) {
    EXPECT_THAT(Read(R"({"error":{"@Message.ExtendedInfo":"only words"}})"),
                ElementsAre(Message("", "only words")));
}

TEST(ExtendedInfoTest, ErrorWithoutListGivesItsCodeAndMessage) {
    EXPECT_THAT(Read(R"({"error":{"code":"Base.1.0.GeneralError","message":"words"}})"),
                ElementsAre(Message("Base.1.0.GeneralError", "words")));
}

TEST(ExtendedInfoTest, ErrorWithNullListGivesItsCodeAndMessage) {
    EXPECT_THAT(Read(R"({"error":{"code":"c","message":"m","@Message.ExtendedInfo":null}})"),
                ElementsAre(Message("c", "m")));
}

TEST(ExtendedInfoTest, ErrorAsTextIsTheMessage) {
    EXPECT_THAT(Read(R"({"error":"words"})"), ElementsAre(Message("", "words")));
}

TEST(ExtendedInfoTest, MessagesAtTheTopAreRead) {
    EXPECT_THAT(Read(R"({"Id":"1","@Message.ExtendedInfo":[{"MessageId":"A","Message":"x"}]})"),
                ElementsAre(Message("A", "x")));
}

TEST(ExtendedInfoTest, MessagesAtBothPlacesAreRead) {
    EXPECT_THAT(Read(R"({"@Message.ExtendedInfo":[{"MessageId":"A"}],
                         "error":{"@Message.ExtendedInfo":[{"MessageId":"B"}]}})"),
                ElementsAre(Message("A", ""), Message("B", "")));
}

TEST(ExtendedInfoTest, BodyWithoutMessagesGivesNone) {
    EXPECT_THAT(Read(R"({"Id":"1","Name":"x"})"), IsEmpty());
}

TEST(ExtendedInfoTest, NullsAndNumbersInTheListArePassedOver) {
    EXPECT_THAT(Read(R"({"@Message.ExtendedInfo":[null,7,{"MessageId":"A"}]})"),
                ElementsAre(Message("A", "")));
}

TEST(ExtendedInfoTest, NullErrorGivesNoMessage) {
    EXPECT_THAT(Read(R"({"error":null})"), IsEmpty());
}

TEST(ExtendedInfoTest, ControlBytesInMessagesAreCleaned) {
    EXPECT_THAT(Read(R"({"error":{"@Message.ExtendedInfo":["two\r\nlines"]}})"),
                ElementsAre(Message("", "two  lines")));
}

TEST(ExtendedInfoProblemTest, NoMessagesNameNoProblem) {
    EXPECT_EQ(ProblemOf(std::vector<ServiceMessage>()), RedfishProblem::kNone);
}

TEST(ExtendedInfoProblemTest, GeneralErrorNamesNoProblem) {
    EXPECT_EQ(ProblemOfId("Base.1.12.GeneralError"), RedfishProblem::kNone);
}

TEST(ExtendedInfoProblemTest, PasswordChangeIsKnownByTheEndOfItsId) {
    EXPECT_EQ(ProblemOfId("Base.1.12.PasswordChangeRequired"), RedfishProblem::kPasswordChange);
    EXPECT_EQ(ProblemOfId("PasswordChangeRequired"), RedfishProblem::kPasswordChange);
    EXPECT_EQ(ProblemOfId("Base.1.12.PasswordChangeRequiredNot"), RedfishProblem::kNone);
}

TEST(ExtendedInfoProblemTest, SessionLimitIsKnownByTheEndOfItsId) {
    EXPECT_EQ(ProblemOfId("Base.1.12.SessionLimitExceeded"), RedfishProblem::kSessionLimit);
}

TEST(ExtendedInfoProblemTest, LicenceIsKnownInIdAndWordsAndBothSpellings) {
    EXPECT_EQ(ProblemOfId("Vendor.1.0.LicenseKeyRequired"), RedfishProblem::kLicence);
    EXPECT_EQ(ProblemOfText("This needs an advanced license."), RedfishProblem::kLicence);
    EXPECT_EQ(ProblemOfText("No licence for this feature."), RedfishProblem::kLicence);
    EXPECT_EQ(ProblemOfText("LICENSE MISSING"), RedfishProblem::kLicence);
}

TEST(ExtendedInfoProblemTest, RefusedCredentialsAreKnownByTheirIds) {
    EXPECT_EQ(ProblemOfId("Base.1.0.ResourceAtUriUnauthorized"), RedfishProblem::kUnauthorized);
    EXPECT_EQ(ProblemOfId("Vendor.1.0.UnauthorizedLoginAttempt"), RedfishProblem::kUnauthorized);
}

TEST(ExtendedInfoProblemTest, MissingPrivilegeIsNoRefusedPassword) {
    EXPECT_EQ(ProblemOfId("Base.1.12.InsufficientPrivilege"), RedfishProblem::kNone);
}

TEST(ExtendedInfoProblemTest, LaterMessageThatNamesAProblemCounts) {
    EXPECT_EQ(ProblemOf({{"Base.1.0.GeneralError", ""}, {"Base.1.0.PasswordChangeRequired", ""}}),
              RedfishProblem::kPasswordChange);
}

TEST(ExtendedInfoTest, ErrorMemberAloneMakesAnErrorDocument) {
    EXPECT_TRUE(IsErrorDocument(Body(R"({"error":{"code":"c"}})")));
}

TEST(ExtendedInfoTest, ResourceWithAnErrorMemberIsStillAResource) {
    EXPECT_FALSE(IsErrorDocument(Body(R"({"error":{},"@odata.type":"#X.v1_0_0.X"})")));
    EXPECT_FALSE(IsErrorDocument(Body(R"({"error":{},"Members":[]})")));
    EXPECT_FALSE(IsErrorDocument(Body(R"({"Id":"1"})")));
}

}  // namespace
}  // namespace Vantix::transport
