#include "service/update_scan_service/detail/system_lists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "doubles/platform_double.h"

namespace service::detail {
namespace {

using testing::_;
using testing::Return;

class SystemListsTest : public testing::Test {
  protected:
    doubles::StrictPlatform platform_;
};

TEST_F(SystemListsTest, SixListsLieBesideTheLibraryInAFixedOrder) {
    const testing::InSequence in_sequence;
    EXPECT_CALL(platform_, GetModuleDirectory()).WillOnce(Return("/folder of/the library/"));
    EXPECT_CALL(platform_,
                SystemCheckConstructor("/folder of/the library/Orvane_systems_list.txt",
                                       "/folder of/the library/AMD_systems_list.txt",
                                       "/folder of/the library/CFC_systems_list.txt",
                                       "/folder of/the library/CSP_systems_list.txt",
                                       "/folder of/the library/Grantly_systems_list.txt",
                                       "/folder of/the library/NO_BMC_systems_list.txt"));
    [[maybe_unused]] const Vantix::SystemCheck system_check = MakeSystemCheck();
}

TEST_F(SystemListsTest, UnknownFolderLeavesBareFileNames) {
    EXPECT_CALL(platform_, GetModuleDirectory()).WillOnce(Return(""));
    EXPECT_CALL(platform_, SystemCheckConstructor("Orvane_systems_list.txt", _, _, _, _, _));
    [[maybe_unused]] const Vantix::SystemCheck system_check = MakeSystemCheck();
}

class IsLegacySystemTest : public SystemListsTest {
  protected:
    IsLegacySystemTest() { EXPECT_CALL(platform_, SystemCheckConstructor(_, _, _, _, _, _)); }

    bool Ask(const std::string& machine_type) {
        Vantix::SystemCheck system_check("", "", "", "", "", "");
        return IsLegacySystem(system_check, machine_type);
    }
};

TEST_F(IsLegacySystemTest, AnyNonZeroAnswerIsLegacy) {
    EXPECT_CALL(platform_, IsBlueSystem("OLD-1")).WillOnce(Return(-5));
    EXPECT_TRUE(Ask("OLD-1"));
}

TEST_F(IsLegacySystemTest, UnlistedMachineTypeIsNot) {
    EXPECT_CALL(platform_, IsBlueSystem("MT-1")).WillOnce(Return(0));
    EXPECT_FALSE(Ask("MT-1"));
}

TEST_F(IsLegacySystemTest, EmptyMachineTypeIsNeverAsked) {
    EXPECT_FALSE(Ask(""));
}

}  // namespace
}  // namespace service::detail
