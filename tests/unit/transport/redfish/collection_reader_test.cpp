#include "transport/redfish/collection_reader.h"

#include "unit/transport/redfish/collection_test.h"

namespace Vantix::transport {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// ---- members --------------------------------------------------------------------------------

TEST_F(CollectionReaderTest, LinkedMembersAreReadInTheirOrder) {
    OpenWith(kNoExpand);
    peer_.AnswerNewestFirst();
    peer_.On(kPlain, Json(CollectionOf({"/c/1", "/c/2", "/c/3"})));
    Offer({"1", "2", "3"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(Paths(answer), ElementsAre("/c/1", "/c/2", "/c/3"));
    EXPECT_THAT(answer.issues, IsEmpty());
    EXPECT_EQ(answer.failed_members, 0);
}

TEST_F(CollectionReaderTest, EmptyCollectionIsNoFailure) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(R"({"Members":[],"Members@odata.count":0})"));
    const CollectionAnswer answer = Read();
    EXPECT_FALSE(answer.failure);
    EXPECT_THAT(answer.members, IsEmpty());
    EXPECT_THAT(answer.issues, IsEmpty());
}

TEST_F(CollectionReaderTest, AbsoluteLinksAndSlashesAreBroughtToPaths) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"https://bmc-other/c/1/", "/c//2"})));
    Offer({"1", "2"});
    EXPECT_THAT(Paths(Read()), ElementsAre("/c/1", "/c/2"));
}

TEST_F(CollectionReaderTest, BlanksInIdsAreEncodedAndNothingElse) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/Installed-0-   __NIC.Slot.1-1", "/c/a%20b"})));
    peer_.On("GET /c/Installed-0-%20%20%20__NIC.Slot.1-1", Json(Member("1")));
    peer_.On("GET /c/a%20b", Json(Member("2")));
    EXPECT_THAT(Read().members, SizeIs(2));
}

TEST_F(CollectionReaderTest, MemberListedTwiceIsReadOnceAtItsFirstPlace) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/2", "/c/1", "/c/2/"}, R"(,"Members@odata.count":3)")));
    Offer({"1", "2"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(Paths(answer), ElementsAre("/c/2", "/c/1"));
    EXPECT_EQ(answer.merged_duplicates, 1);
    EXPECT_THAT(answer.issues, IsEmpty());
}

TEST_F(CollectionReaderTest, BadMembersCostOnlyThemselves) {
    OpenWith(kNoExpand);
    std::vector<std::string> paths;
    for (int number = 1; number <= 10; ++number) paths.push_back("/c/" + std::to_string(number));
    peer_.On(kPlain, Json(CollectionOf(paths)));
    peer_.On("GET /c/1", Status(400)).On("GET /c/5", Status(404)).On("GET /c/10", Status(500));
    Offer({"2", "3", "4", "6", "7", "8", "9"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(answer.members, SizeIs(7));
    EXPECT_EQ(answer.failed_members, 3);
    EXPECT_THAT(answer.issues,
                ElementsAre(HasSubstr("GET /c/1 answered 400"), HasSubstr("GET /c/5 answered 404"),
                            HasSubstr("GET /c/10 answered 500")));
}

TEST_F(CollectionReaderTest, MemberForWantOfALicenceIsMarked) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"})));
    peer_.On("GET /c/1", Refusal(403, "Vendor.1.0.LicenseRequired"));
    EXPECT_THAT(Read().issues, ElementsAre(HasSubstr("needs a licence")));
}

TEST_F(CollectionReaderTest, CleanedMemberIsKeptWithAnIssue) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"})));
    peer_.On("GET /c/1", Json("{\"Id\":\"a\rb\"}"));
    const CollectionAnswer answer = Read();
    EXPECT_THAT(answer.members, SizeIs(1));
    EXPECT_THAT(answer.issues, ElementsAre(HasSubstr("/c/1")));
}

TEST_F(CollectionReaderTest, MemberWithoutAddressIsLeftOutAndTold) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(R"({"Members":[{"Name":"no address"},null,7,{"@odata.id":"/c/1"}]})"));
    Offer({"1"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(Paths(answer), ElementsAre("/c/1"));
    EXPECT_EQ(answer.failed_members, 3);
}

TEST_F(CollectionReaderTest, PlainTextIsTakenForALink) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(R"({"Members":["/c/1"]})"));
    Offer({"1"});
    EXPECT_THAT(Paths(Read()), ElementsAre("/c/1"));
}

TEST_F(CollectionReaderTest, UnwantedMembersAreNotAsked) {
    OpenWith(kNoExpand);
    options_.wants_member = [](const std::string& path) { return path == "/c/2"; };
    peer_.On(kPlain, Json(CollectionOf({"/c/1", "/c/2"}, R"(,"Members@odata.count":2)")));
    Offer({"2"});
    EXPECT_THAT(Read().issues, IsEmpty());
}

TEST_F(CollectionReaderTest, ProgressTellsHowManyOfHowMany) {
    OpenWith(kNoExpand);
    std::vector<std::pair<std::size_t, std::size_t>> told;
    options_.on_progress = [&](std::size_t read, std::size_t all) { told.emplace_back(read, all); };
    peer_.On(kPlain, Json(CollectionOf({"/c/1", "/c/2"})));
    Offer({"1", "2"});
    Read();
    EXPECT_THAT(told, ElementsAre(std::pair(1U, 2U), std::pair(2U, 2U)));
}

// ---- shapes of the list -------------------------------------------------------------------------

TEST_F(CollectionReaderTest, ObjectInsteadOfListIsTheOnlyMember) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(R"({"Members":{"@odata.id":"/c/1"}})"));
    Offer({"1"});
    EXPECT_THAT(Paths(Read()), ElementsAre("/c/1"));
}

class NoMembersTest : public CollectionReaderTest,
                      public ::testing::WithParamInterface<const char*> {};

TEST_P(NoMembersTest, IsAFailureOfThisCollection) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(GetParam()));
    const CollectionAnswer answer = Read();
    EXPECT_EQ(answer.failure.problem, RedfishProblem::kBadBody);
    EXPECT_THAT(answer.failure.text, HasSubstr("/c"));
}

INSTANTIATE_TEST_SUITE_P(All, NoMembersTest,
                         ::testing::Values(R"({"Members":null})", R"({"Name":"nothing"})",
                                           R"({"Members":"text"})", R"({"Members":7})"));

TEST_F(CollectionReaderTest, UnreadableCollectionIsAFailure) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Status(404));
    EXPECT_EQ(Read().failure.problem, RedfishProblem::kNotFound);
}

TEST_F(CollectionReaderTest, MembersBesideAnErrorAreUsedAndTheErrorTold) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"}, R"(,"error":{"code":"c"})")));
    Offer({"1"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(answer.members, SizeIs(1));
    EXPECT_THAT(answer.issues, ElementsAre(HasSubstr("error")));
}

class CountTest : public CollectionReaderTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(CountTest, OtherThanAnnouncedIsTold) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1", "/c/2"}, GetParam())));
    Offer({"1", "2"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(answer.members, SizeIs(2));
    EXPECT_THAT(answer.issues, ElementsAre(HasSubstr("announced")));
}

INSTANTIATE_TEST_SUITE_P(All, CountTest,
                         ::testing::Values(R"(,"Members@odata.count":1)",
                                           R"(,"Members@odata.count":"3")"));

// ---- pages ------------------------------------------------------------------------------------

TEST_F(CollectionReaderTest, PagesAreFollowedToTheEnd) {
    OpenWith(kNoExpand);
    const std::string count = R"(,"Members@odata.count":3)";
    peer_.On(kPlain, Json(CollectionOf({"/c/1"}, NextLink("/c?$skip=1") + count)));
    peer_.On("GET /c?$skip=1", Json(CollectionOf({"/c/2"}, NextLink("/c?$skip=2") + count)));
    peer_.On("GET /c?$skip=2", Json(CollectionOf({"/c/3"}, count)));
    Offer({"1", "2", "3"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(Paths(answer), ElementsAre("/c/1", "/c/2", "/c/3"));
    EXPECT_THAT(answer.issues, IsEmpty());
}

TEST_F(CollectionReaderTest, OldSpellingOfTheNextLinkIsFollowed) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"}, R"(,"@odata.nextLink":"/c?$skip=1")")));
    peer_.On("GET /c?$skip=1", Json(CollectionOf({"/c/2"})));
    Offer({"1", "2"});
    EXPECT_THAT(Read().members, SizeIs(2));
}

TEST_F(CollectionReaderTest, BlanksAndQuotesInTheNextLinkAreEncoded) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"}, NextLink(R"(/c?$filter=a eq \"b\"&$skip=1)"))));
    peer_.On("GET /c?$filter=a%20eq%20%22b%22&$skip=1", Json(CollectionOf({"/c/2"})));
    Offer({"1", "2"});
    EXPECT_THAT(Read().members, SizeIs(2));
}

TEST_F(CollectionReaderTest, NextLinkThatLeadsBackEndsTheReading) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"}, NextLink("/c?$skip=1"))));
    peer_.On("GET /c?$skip=1", Json(CollectionOf({"/c/2"}, NextLink("/c?$skip=1"))));
    Offer({"1", "2"});
    const CollectionAnswer answer = Read();
    EXPECT_THAT(answer.members, SizeIs(2));
    EXPECT_THAT(answer.issues, ElementsAre(HasSubstr("leads back")));
}

TEST_F(CollectionReaderTest, FailedLaterPageKeepsTheMembersBefore) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"}, NextLink("/c?$skip=1"))));
    peer_.On("GET /c?$skip=1", Status(500));
    Offer({"1"});
    const CollectionAnswer answer = Read();
    EXPECT_FALSE(answer.failure);
    EXPECT_THAT(answer.members, SizeIs(1));
    EXPECT_EQ(answer.failed_members, 1);
    EXPECT_THAT(answer.issues, ElementsAre(HasSubstr("GET /c?$skip=1 answered 500")));
}

TEST_F(CollectionReaderTest, LaterPageWithoutMembersKeepsTheOthers) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(CollectionOf({"/c/1"}, NextLink("/c?$skip=1"))));
    peer_.On("GET /c?$skip=1", Json(R"({"Members":null})"));
    Offer({"1"});
    const CollectionAnswer answer = Read();
    EXPECT_FALSE(answer.failure);
    EXPECT_THAT(answer.members, SizeIs(1));
    EXPECT_THAT(answer.issues, ElementsAre(HasSubstr("without a list")));
}

TEST_F(CollectionReaderTest, EndlessPagesEndAfterAThousand) {
    OpenWith(kNoExpand);
    peer_.On(kPlain, Json(R"({"Members":[],"Members@odata.nextLink":"/c?p=1"})"));
    for (int page = 1; page < 1000; ++page) {
        const std::string next = "/c?p=" + std::to_string(page + 1);
        peer_.On("GET /c?p=" + std::to_string(page),
                 Json(R"({"Members":[])" + NextLink(next) + "}"));
    }
    const CollectionAnswer answer = Read();
    EXPECT_THAT(answer.issues, ElementsAre(HasSubstr("more than 1000 pages")));
    EXPECT_EQ(answer.failed_members, 1);
}

// ---- members by links -------------------------------------------------------------------------

TEST_F(CollectionReaderTest, MembersByLinksAreReadOnceEach) {
    OpenWith(kExpand);
    Offer({"1", "2"});
    std::optional<CollectionAnswer> read;
    ReadMembers(*service_, {"/c/1", "/c/2", "/c/1"}, options_,
                [&](CollectionAnswer&& answer) { read = std::move(answer); });
    while (service_->Step()) {
    }
    ASSERT_TRUE(read.has_value());
    EXPECT_THAT(Paths(*read), ElementsAre("/c/1", "/c/2"));
}

}  // namespace
}  // namespace Vantix::transport
