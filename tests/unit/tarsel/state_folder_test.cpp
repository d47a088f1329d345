#include "tarsel/state_folder.h"

#include <gtest/gtest.h>

namespace tarsel {
namespace {

TEST(StateFolderTest, StateHomeIsPreferred) {
    EXPECT_EQ(DurationFile("/state", "/home/me"), "/state/tarsel/durations.txt");
}

TEST(StateFolderTest, HomeIsTheFallBack) {
    EXPECT_EQ(DurationFile(nullptr, "/home/me"), "/home/me/.local/state/tarsel/durations.txt");
}

TEST(StateFolderTest, RelativeOrEmptyStateHomeIsIgnored) {
    EXPECT_EQ(DurationFile("state", "/home/me"), "/home/me/.local/state/tarsel/durations.txt");
    EXPECT_EQ(DurationFile("", "/home/me"), "/home/me/.local/state/tarsel/durations.txt");
}

TEST(StateFolderTest, WithoutAHomeNothingIsRemembered) {
    EXPECT_EQ(DurationFile(nullptr, nullptr), "");
    EXPECT_EQ(DurationFile("", "relative"), "");
}

}  // namespace
}  // namespace tarsel
