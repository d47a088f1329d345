#include "platform/cim/cim_target.h"

#include <gtest/gtest.h>

namespace Vantix::cim {
namespace {

using VantixConnection::ConnectOption;

ConnectOption Option(int mode, int port = 0, int cim_port = 0) {
    ConnectOption option;
    option.connect_mode = mode;
    option.target_address = "::1";
    option.port = port;
    option.cim_port = cim_port;
    return option;
}

TEST(CimTargetTest, ModeTellsTheKindOfTarget) {
    EXPECT_EQ(TargetKindOf(Option(3)), CimTargetKind::kChassis);
    EXPECT_EQ(TargetKindOf(Option(5)), CimTargetKind::kChassis);
    EXPECT_EQ(TargetKindOf(Option(4)), CimTargetKind::kHypervisor);
    for (const int mode : {0, 1, 2, 6, 7, 9}) {
        EXPECT_EQ(TargetKindOf(Option(mode)), CimTargetKind::kBmc) << mode;
    }
}

TEST(CimTargetTest, DefaultPortIsThatOfTls) {
    EXPECT_EQ(CimPortOf(Option(2)), 5989);
    EXPECT_EQ(CimPortOf(Option(4)), 5989);
}

TEST(CimTargetTest, PlainHttpHasItsOwnDefault) {
    ConnectOption option = Option(2);
    option.cim_plain_http = true;

    EXPECT_EQ(CimPortOf(option), 5988);
}

TEST(CimTargetTest, PortOfABmcIsItsWebPort) {
    EXPECT_EQ(CimPortOf(Option(2, 8443)), 5989);
    EXPECT_EQ(WebPortOf(Option(2, 8443)), 8443);
    EXPECT_EQ(WebPortOf(Option(2)), 443);
}

TEST(CimTargetTest, PortOfACimOnlyTargetIsItsCimPort) {
    for (const int mode : {3, 4, 5}) {
        EXPECT_EQ(CimPortOf(Option(mode, 15989)), 15989);
        EXPECT_EQ(WebPortOf(Option(mode, 15989)), 443);
    }
}

TEST(CimTargetTest, BothPortsAreTakenWhereBothAreGiven) {
    for (const int mode : {2, 3, 4, 5}) {
        EXPECT_EQ(CimPortOf(Option(mode, 8443, 15989)), 15989);
        EXPECT_EQ(WebPortOf(Option(mode, 8443, 15989)), 8443);
    }
}

TEST(CimTargetTest, TextFitsIntoAUrl) {
    EXPECT_EQ(CimTargetOf(Option(2)), "[::1]:5989");
}

}  // namespace
}  // namespace Vantix::cim
