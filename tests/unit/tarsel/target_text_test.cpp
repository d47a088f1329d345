#include "tarsel/target_text.h"

#include <gtest/gtest.h>

#include "tarsel/host_name.h"

namespace tarsel {
namespace {

ScanArguments Target(TargetKind kind, const std::string& host, int port = 0) {
    ScanArguments arguments;
    arguments.kind = kind;
    arguments.host = host;
    arguments.port = port;
    return arguments;
}

TEST(TargetTextTest, PortStandsBehindTheHost) {
    EXPECT_EQ(TargetText(Target(TargetKind::kBmc, "::1")), "::1");
    EXPECT_EQ(TargetText(Target(TargetKind::kBmc, "::1", 8443)), "[::1]:8443");
    EXPECT_EQ(TargetText(Target(TargetKind::kBmc, "127.0.0.1", 8443)), "127.0.0.1:8443");
}

TEST(TargetTextTest, RemoteTargetIsItsOwnPeer) {
    EXPECT_EQ(PeerText(Target(TargetKind::kEnclosure, "127.0.0.1", 8443)), "127.0.0.1:8443");
}

class OwnMachineTextTest : public testing::TestWithParam<TargetKind> {};

TEST_P(OwnMachineTextTest, IsItsName) {
    const std::string expected = HostName().empty() ? "this machine" : HostName();
    EXPECT_EQ(TargetText(Target(GetParam(), "")), expected);
    EXPECT_EQ(TargetText(Target(GetParam(), "127.0.0.1", 8443)), expected);
}

TEST_P(OwnMachineTextTest, RecordedTreeIsNotTakenForIt) {
    ScanArguments arguments = Target(GetParam(), "");
    arguments.system_root = "recorded/tree";
    EXPECT_EQ(TargetText(arguments), "the machine recorded in recorded/tree");
}

TEST_P(OwnMachineTextTest, PeerIsItsBmc) {
    EXPECT_EQ(PeerText(Target(GetParam(), "")), "this machine's BMC");
    EXPECT_EQ(PeerText(Target(GetParam(), "::1", 8443)), "[::1]:8443");
}

INSTANTIATE_TEST_SUITE_P(Kinds, OwnMachineTextTest,
                         testing::Values(TargetKind::kInBand, TargetKind::kAmd,
                                         TargetKind::kLocal));

}  // namespace
}  // namespace tarsel
