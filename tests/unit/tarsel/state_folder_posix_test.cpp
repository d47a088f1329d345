#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "tarsel/state_folder.h"

namespace tarsel {
namespace {

class StateFolderTest : public testing::Test {
  protected:
    StateFolderTest() : state_home_(Value("XDG_STATE_HOME")), home_(Value("HOME")) {}
    ~StateFolderTest() override {
        Set("XDG_STATE_HOME", state_home_ ? state_home_->c_str() : nullptr);
        Set("HOME", home_ ? home_->c_str() : nullptr);
    }

    static std::string DurationFileWith(const char* state_home, const char* home) {
        Set("XDG_STATE_HOME", state_home);
        Set("HOME", home);
        return DurationFile();
    }

  private:
    static std::optional<std::string> Value(const char* name) {
        const char* const value = std::getenv(name);
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    }
    static void Set(const char* name, const char* value) {
        value == nullptr ? unsetenv(name) : setenv(name, value, 1);
    }

    std::optional<std::string> state_home_;
    std::optional<std::string> home_;
};

TEST_F(StateFolderTest, StateHomeIsPreferred) {
    EXPECT_EQ(DurationFileWith("/state", "/home/me"), "/state/tarsel/durations.txt");
}

TEST_F(StateFolderTest, HomeIsTheFallBack) {
    EXPECT_EQ(DurationFileWith(nullptr, "/home/me"), "/home/me/.local/state/tarsel/durations.txt");
}

TEST_F(StateFolderTest, RelativeOrEmptyStateHomeIsIgnored) {
    EXPECT_EQ(DurationFileWith("state", "/home/me"), "/home/me/.local/state/tarsel/durations.txt");
    EXPECT_EQ(DurationFileWith("", "/home/me"), "/home/me/.local/state/tarsel/durations.txt");
}

TEST_F(StateFolderTest, WithoutAHomeNothingIsRemembered) {
    EXPECT_EQ(DurationFileWith(nullptr, nullptr), "");
    EXPECT_EQ(DurationFileWith("", "relative"), "");
}

}  // namespace
}  // namespace tarsel
