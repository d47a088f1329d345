// What Windows tells of the machine that the test runs on.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>

#include "platform/local/firmware_table.h"
#include "platform/local/kernel_name.h"
#include "platform/local/running_os.h"
#include "support/pattern.h"

namespace Vantix::local {
namespace {

using test_support::HasPattern;
using testing::StartsWith;

// A table is a row of structures: type, length, handle, fields, then texts up to two zero bytes.
// The one of type 127 is the last.
bool IsWholeTable(const std::string& table) {
    constexpr unsigned char kEndOfTable = 127;
    for (std::size_t at = 0; at + 4 <= table.size();) {
        const std::size_t length = static_cast<unsigned char>(table[at + 1]);
        const std::size_t end = table.find(std::string(2, '\0'), at + length);
        if (length < 4 || end == std::string::npos) return false;
        if (static_cast<unsigned char>(table[at]) == kEndOfTable) return true;
        at = end + 2;
    }
    return false;
}

TEST(RunningMachineTest, ArchitectureIsTheOneThatWasCompiledFor) {
    EXPECT_EQ(RunningArchitecture(), "x86_64");
}

TEST(RunningMachineTest, SystemHasANameAndABuildNumber) {
    const std::optional<OsName> os = RunningOs();
    ASSERT_TRUE(os.has_value());
    EXPECT_THAT(os->name, StartsWith("windows"));
    EXPECT_THAT(os->minor_version, HasPattern("^[0-9]{5,}(\\.[0-9]+)?$"));
}

TEST(RunningMachineTest, FirmwareTableComesWithoutTheHeaderOfWindows) {
    const std::optional<std::string> table = RunningFirmwareTable();
    if (!table) GTEST_SKIP() << "this machine hands out no SMBIOS table";
    EXPECT_TRUE(IsWholeTable(*table)) << table->size() << " bytes";
}

}  // namespace
}  // namespace Vantix::local
