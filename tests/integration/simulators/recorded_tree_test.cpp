// How a folder of recorded resources becomes a service: names, letter case, pages, errors.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "integration/simulators/small_tree.h"

namespace simulator_test {
namespace {

#ifdef _WIN32
constexpr bool kIsWindows = true;
#else
constexpr bool kIsWindows = false;
#endif

using simulators::BmcOptions;
using ::testing::HasSubstr;

std::string ErrorBody(const std::string& id) {
    return R"({"error":{"code":"Base.1.0.GeneralError","@Message.ExtendedInfo":[{"MessageId":"Base.1.0.)" +
           id + R"("}]}})";
}

long StatusOf(const std::string& body) {
    const SmallTree tree;
    tree.Add("/redfish/v1/X", body);
    return SmallBmc(tree.Options()).client.Get("/redfish/v1/X").status;
}

std::string BodyAt(const SmallTree& tree, const std::string& target) {
    return SmallBmc(tree.Options()).client.Get(target).body;
}

TEST(RecordedTreeTest, BodyIsServedUnchanged) {
    const SmallTree tree;
    tree.Add("/redfish/v1/X", "{ \"a\" :\t1 }\r\n");
    EXPECT_EQ(BodyAt(tree, "/redfish/v1/X"), "{ \"a\" :\t1 }\r\n");
}

TEST(RecordedTreeTest, TrailingAndDoubledSlashesDoNotMatter) {
    const SmallTree tree;
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/Chassis/A/"), HasSubstr("Part A"));
    EXPECT_THAT(BodyAt(tree, "/redfish/v1//Chassis/A"), HasSubstr("Part A"));
}

TEST(RecordedTreeTest, AnyLetterCaseFindsTheResource) {
    const SmallTree tree;
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/chassis/a"), HasSubstr("Part A"));
}

TEST(RecordedTreeTest, ExactLetterCaseComesFirst) {
    if (kIsWindows)
        GTEST_SKIP() << "file names that differ in letter case alone are one file on Windows";
    const SmallTree tree;
    tree.Add("/redfish/v1/chassis/a", "{\"Name\":\"lower\"}");
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/chassis/a"), HasSubstr("lower"));
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/Chassis/A"), HasSubstr("Part A"));
}

TEST(RecordedTreeTest, QuotedBytesAreUnquoted) {
    const SmallTree tree;
    tree.Add("/redfish/v1/Fan#1 x", "{\"Name\":\"fan\"}");
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/Fan%231%20x"), HasSubstr("fan"));
}

TEST(RecordedTreeTest, QuotedFolderNamesAreUnquotedToo) {
    const SmallTree tree;
    tree.Add("/redfish/v1/Fan%231", "{\"Name\":\"fan\"}");
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/Fan%231"), HasSubstr("fan"));
}

TEST(RecordedTreeTest, BrokenQuotingStandsForItself) {
    const SmallTree tree;
    tree.Add("/redfish/v1/50%", "{\"Name\":\"half\"}");
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/50%"), HasSubstr("half"));
    EXPECT_EQ(simulators::BmcSimulator(tree.Options()).Counts().requests, 0);
}

TEST(RecordedTreeTest, FolderWithQueryIsAFurtherPage) {
    if (kIsWindows) GTEST_SKIP() << "no file name holds a question mark on Windows";
    const SmallTree tree;
    tree.Add("/redfish/v1/Chassis?$skip=75", R"({"Members":[{"@odata.id":"/second/page"}]})");
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/Chassis?$skip=75"), HasSubstr("/second/page"));
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/Chassis"), HasSubstr("/redfish/v1/Chassis/A"));
}

TEST(RecordedTreeTest, UnknownQueryIsIgnored) {
    const SmallTree tree;
    EXPECT_THAT(BodyAt(tree, "/redfish/v1/Chassis/A?only"), HasSubstr("Part A"));
}

TEST(RecordedTreeTest, MissingResourceIsNotFound) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    const Reply reply = small.client.Get("/redfish/v1/Nothing");
    EXPECT_EQ(reply.status, 404);
    EXPECT_THAT(reply.body, HasSubstr("ResourceMissingAtURI"));
}

TEST(RecordedTreeTest, NullBodyIsNotFound) {
    EXPECT_EQ(StatusOf("null\n"), 404);
}

TEST(RecordedTreeTest, ErrorDocumentsCarryTheStatusOfTheirMessage) {
    EXPECT_EQ(StatusOf(ErrorBody("ResourceMissingAtURI")), 404);
    EXPECT_EQ(StatusOf(ErrorBody("ResourceNotFound")), 404);
    EXPECT_EQ(StatusOf(ErrorBody("InsufficientPrivilege")), 403);
    EXPECT_EQ(StatusOf(ErrorBody("ResourceTemporarilyUnavailable")), 503);
    EXPECT_EQ(StatusOf(ErrorBody("InternalError")), 500);
    EXPECT_EQ(StatusOf(ErrorBody("SomethingElse")), 400);
}

TEST(RecordedTreeTest, ErrorBesideATypeIsAGoodBody) {
    EXPECT_EQ(StatusOf(R"({"@odata.type":"#A.A","error":{"code":"Base.1.0.InternalError"}})"), 200);
}

TEST(RecordedTreeTest, ErrorTextHoldsTheStatusInItsFirstLine) {
    const SmallTree tree;
    tree.AddErrorText("/redfish/v1/X", "HTTP 503 Service Unavailable\nmore\n");
    tree.AddErrorText("/redfish/v1/Y", "405\n");
    SmallBmc small(tree.Options());
    EXPECT_EQ(small.client.Get("/redfish/v1/X").status, 503);
    EXPECT_EQ(small.client.Get("/redfish/v1/Y").status, 405);
}

TEST(RecordedTreeTest, ReplacedBodiesLieOverTheScenario) {
    const SmallTree tree;
    BmcOptions options = tree.Options();
    options.replaced_bodies = {{"/redfish/v1/Chassis/A", "{\"Name\":\"other\"}"},
                               {"/redfish/v1/Chassis/B", ""},
                               {"/redfish/v1/New", "{\"Name\":\"new\"}"}};
    SmallBmc small(options);
    EXPECT_THAT(small.client.Get("/redfish/v1/Chassis/A").body, HasSubstr("other"));
    EXPECT_EQ(small.client.Get("/redfish/v1/Chassis/B").status, 404);
    EXPECT_THAT(small.client.Get("/redfish/v1/New").body, HasSubstr("new"));
}

TEST(RecordedTreeTest, ReplacedBodiesCanBeTakenAwayAgain) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    BmcOptions options = small.bmc.Options();
    options.replaced_bodies = {{"/redfish/v1/Chassis/A", ""}};
    small.bmc.SetOptions(options);
    EXPECT_EQ(small.client.Get("/redfish/v1/Chassis/A").status, 404);
    options.replaced_bodies.clear();
    small.bmc.SetOptions(options);
    EXPECT_EQ(small.client.Get("/redfish/v1/Chassis/A").status, 200);
}

TEST(RecordedTreeTest, OnlyReadingIsAllowed) {
    const SmallTree tree;
    SmallBmc small(tree.Options());
    EXPECT_EQ(small.client.Post("/redfish/v1/Chassis/A", "{}").status, 405);
    EXPECT_EQ(small.client.Send("DELETE", "/redfish/v1/Chassis/A").status, 405);
}

TEST(RecordedTreeTest, FolderWithoutServiceRootIsRefused) {
    const test_support::TemporaryFolder empty;
    BmcOptions options;
    options.scenario_dir = empty.Path("");
    EXPECT_THROW(simulators::BmcSimulator bmc(options), std::runtime_error);
}

/// Recorded sets of real machines; they lie outside the sources.
class RecordedMachineTest : public testing::TestWithParam<std::string> {};

TEST_P(RecordedMachineTest, RootAndInventoryAreServed) {
    const char* environment = std::getenv("TARSEL_SHARED_MOCKUPS");
    const std::filesystem::path sets = environment ? environment : TARSEL_SHARED_MOCKUPS;
    if (!std::filesystem::exists(sets / GetParam())) {
        GTEST_SKIP() << "TARSEL_SHARED_MOCKUPS names no folder with " << GetParam();
    }
    BmcOptions options;
    options.scenario_dir = (sets / GetParam()).string();
    SmallBmc small(options);
    EXPECT_THAT(small.client.Get("/redfish/v1").body, HasSubstr("\"UpdateService\""));
    EXPECT_THAT(small.client.Get(kInventory).body, HasSubstr("\"Members\""));
    EXPECT_EQ(small.client.LogIn().status, 201);
}

INSTANTIATE_TEST_SUITE_P(Sets, RecordedMachineTest,
                         testing::Values("ami-gigabyte-epyc", "dmtf-rackmount1", "hpe-dl360-gen12",
                                         "openbmc-stock"),
                         [](const auto& set) {
                             std::string name = set.param;
                             std::erase(name, '-');
                             return name;
                         });

}  // namespace
}  // namespace simulator_test
