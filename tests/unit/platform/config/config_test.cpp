#include "platform/config/config.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "platform/os/os.h"

namespace Vantix {
namespace {

// The settings file lies beside the module, which here is the test program itself.
class ConfigTest : public testing::Test {
  protected:
    ~ConfigTest() override { std::remove(File().c_str()); }
    static std::string File() { return GetModuleDirectory() + "global.config"; }
    static void Write(const std::string& text) { std::ofstream(File()) << text; }
};

TEST_F(ConfigTest, MissingFileGivesTheDefault) {
    std::remove(File().c_str());
    EXPECT_EQ(GetGlobalConfigValue("BMC_REDFISH_WAIT_RESTARTING_TIME", 300), 300);
}

TEST_F(ConfigTest, ValueOfTheFileBesideTheModuleIsUsed) {
    Write("BMC_REDFISH_WAIT_RESTARTING_TIME = 12\n");
    EXPECT_EQ(GetGlobalConfigValue("BMC_REDFISH_WAIT_RESTARTING_TIME", 300), 12);
}

TEST_F(ConfigTest, TextInsteadOfANumberGivesTheDefault) {
    Write("BMC_REDFISH_WAIT_RESTARTING_TIME = soon\n");
    EXPECT_EQ(GetGlobalConfigValue("BMC_REDFISH_WAIT_RESTARTING_TIME", 300), 300);
}

}  // namespace
}  // namespace Vantix
