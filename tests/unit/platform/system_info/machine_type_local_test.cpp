#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/system_info/system_info.h"
#include "support/local_run.h"
#include "support/unprivileged_user.h"

namespace {

using test_support::LocalRun;
using test_support::SystemTree;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Vantix::VantixConnection::ConnectionInfo;

const std::string kId = "/sys/class/dmi/id/";

TEST(LocalMachineTypeTest, DefaultConnectionIsTheLocalHost) {
    SystemTree tree;
    tree.File(kId + "product_name", "Rack 1\n").File(kId + "product_serial", "SER12345\n");
    const LocalRun run(tree);
    std::pair<std::string, std::string> mt_sn("old", "old");
    EXPECT_EQ(SystemInfoScan::GetMachineType(ConnectionInfo(), mt_sn), 0);
    EXPECT_EQ(mt_sn.first, "Rack 1");
    EXPECT_EQ(mt_sn.second, "SER12345");
    EXPECT_THAT(run.Notices(), IsEmpty());
}

TEST(LocalMachineTypeTest, MachineWithoutDescriptionFailsWithASentence) {
    const SystemTree tree = {};
    const LocalRun run(tree);
    std::pair<std::string, std::string> mt_sn("old", "old");
    EXPECT_EQ(SystemInfoScan::GetMachineType(ConnectionInfo(), mt_sn), 0x6D2);
    EXPECT_EQ(mt_sn, (std::pair<std::string, std::string>()));
    EXPECT_THAT(run.Notices(), ElementsAre(HasSubstr("containers and small virtual machines")));
}

TEST(LocalMachineTypeTest, PlaceholdersAreAnEmptyMachineTypeAndASentence) {
    SystemTree tree;
    tree.File(kId + "product_name", "Default string\n").File(kId + "product_serial", "SER12345\n");
    const LocalRun run(tree);
    std::pair<std::string, std::string> mt_sn;
    EXPECT_EQ(SystemInfoScan::GetMachineType(ConnectionInfo(), mt_sn), 0);
    EXPECT_EQ(mt_sn.first, "");
    EXPECT_EQ(mt_sn.second, "SER12345");
    EXPECT_THAT(run.Notices(), ElementsAre(HasSubstr("machine type")));
}

TEST(LocalMachineTypeTest, ForbiddenSerialStandsInTheSummary) {
    SystemTree tree;
    tree.File(kId + "product_name", "Rack 1\n").File(kId + "product_serial", "SER12345\n");
    tree.File(kId + "board_serial", "BRD12345\n");
    tree.Forbid(kId + "product_serial");
    const test_support::UnprivilegedUser user(tree.Root());
    const LocalRun run(tree);
    std::pair<std::string, std::string> mt_sn;
    EXPECT_EQ(SystemInfoScan::GetMachineType(ConnectionInfo(), mt_sn), 0);
    EXPECT_EQ(mt_sn.second, "BRD12345");
    ASSERT_EQ(run.Sources().size(), 1u);
    EXPECT_THAT(run.Sources()[0].issues, ElementsAre(kId + "product_serial"));
}

TEST(LocalMachineTypeTest, OtherConnectionsWithoutChannelAreNotTheLocalHost) {
    SystemTree tree;
    tree.File(kId + "product_name", "Rack 1\n");
    const LocalRun run(tree);
    ConnectionInfo rest;
    rest.connect_case = Vantix::VantixConnection::kConnectCaseRest;
    std::pair<std::string, std::string> mt_sn;
    EXPECT_EQ(SystemInfoScan::GetMachineType(rest, mt_sn), 0x6D2);
    EXPECT_EQ(mt_sn.first, "");
}

}  // namespace
