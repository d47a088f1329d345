#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/local/machine_identity.h"
#include "platform/log/log_settings.h"
#include "support/system_tree.h"

namespace {

using test_support::SystemTree;
using testing::HasSubstr;
using testing::Not;
using Vantix::transport::SystemRoot;

class MachineIdentityLogTest : public testing::Test {
  protected:
    ~MachineIdentityLogTest() override { Vantix::ShutdownLog(); }

    std::string LogOfReading(int level) {
        Vantix::LogSettings settings;
        settings.file = folder_.Path("test.log");
        settings.file_level = level;
        EXPECT_THAT(Vantix::ConfigureLog(settings), testing::IsEmpty());
        tree_.File("/sys/class/dmi/id/product_serial", "To be filled by O.E.M.\n");
        EXPECT_EQ(Vantix::local::ReadMachineIdentity(SystemRoot(tree_.Root())).serial_number, "");
        Vantix::ShutdownLog();
        return folder_.Read("test.log");
    }

    SystemTree tree_;
    test_support::TemporaryFolder folder_;
};

TEST_F(MachineIdentityLogTest, PlaceholderStandsInTheDebugLog) {
    EXPECT_THAT(LogOfReading(4), HasSubstr("product_serial is a placeholder: To be filled by"));
}

TEST_F(MachineIdentityLogTest, PlaceholderStandsInNoOtherLog) {
    EXPECT_THAT(LogOfReading(3), Not(HasSubstr("To be filled by")));
}

}  // namespace
