#include "platform/local/windows_name.h"

#include <gtest/gtest.h>

namespace {

using Vantix::local::WindowsName;

TEST(WindowsNameTest, ServersAndClientsOfOneBuildHaveTheirOwnNames) {
    EXPECT_EQ(WindowsName(17763, true), "windows2019");
    EXPECT_EQ(WindowsName(17763, false), "windows10");
    EXPECT_EQ(WindowsName(26100, true), "windows2025");
    EXPECT_EQ(WindowsName(26100, false), "windows11");
}

TEST(WindowsNameTest, BuildsBetweenTwoReleasesBelongToTheOlderOne) {
    EXPECT_EQ(WindowsName(20347, true), "windows2019");
    EXPECT_EQ(WindowsName(20348, true), "windows2022");
    EXPECT_EQ(WindowsName(21999, false), "windows10");
    EXPECT_EQ(WindowsName(22000, false), "windows11");
}

TEST(WindowsNameTest, NewerBuildsKeepTheNewestNameAndAncientOnesThePlainOne) {
    EXPECT_EQ(WindowsName(99999, true), "windows2025");
    EXPECT_EQ(WindowsName(6000, true), "windows");
    EXPECT_EQ(WindowsName(0, false), "windows");
}

}  // namespace
