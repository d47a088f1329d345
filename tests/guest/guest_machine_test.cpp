#include "guest/guest_machine_posix.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/temporary_folder.h"

namespace guest {
namespace {

// One boot for all cases; each looks at what the machine told about one thing.
class GuestMachineTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (GuestMachine::Missing().empty()) machine_ = std::make_unique<GuestMachine>();
    }
    static void TearDownTestSuite() { machine_.reset(); }

    void SetUp() override {
        if (!machine_) GTEST_SKIP() << GuestMachine::Missing();
        ASSERT_TRUE(machine_->HasToldAll()) << machine_->Console();
    }

    static std::string Fact(const std::string& key) { return machine_->Fact(key); }

    /// The part's text; a failure of the test when its command failed.
    static std::string TextOf(const std::string& part) {
        const ConsolePart told = machine_->Told(part);
        EXPECT_EQ(told.status, 0) << part << ": " << told.text;
        return told.text;
    }

    static std::unique_ptr<GuestMachine> machine_;
};

std::unique_ptr<GuestMachine> GuestMachineTest::machine_;

TEST_F(GuestMachineTest, KernelFindsAllDevicesOfTheMachine) {
    TextOf("devices");
    EXPECT_EQ(Fact("nvme0.serial"), "NVSER0001");
    EXPECT_EQ(Fact("nvme1.serial"), "NVSER0002");
    EXPECT_EQ(Fact("sda.model"), "DISK01");
    EXPECT_EQ(Fact("dmi.product_serial"), "SER12345");
}

TEST_F(GuestMachineTest, SlotsHaveTheirNumbers) {
    EXPECT_EQ(Fact("slot.11") + ".0", Fact("nvme0.address"));
    EXPECT_EQ(Fact("slot.12") + ".0", Fact("nvme1.address"));
    EXPECT_FALSE(Fact("slot.13").empty());
}

TEST_F(GuestMachineTest, ControllerAnswersAtTheSystemInterface) {
    EXPECT_NE(TextOf("system-interface").find("Firmware Revision         : 9.08"),
              std::string::npos);
}

TEST_F(GuestMachineTest, ScanOfASimulatedBmcGivesTheSameFileInsideAsOutside) {
    TextOf("bmc");
    EXPECT_EQ(TextOf("bmc.xml"), test_support::TemporaryFolder::ReadFile(
                                     TARSEL_SCENARIOS "/tavro-v3/expected-scan.xml"));
}

}  // namespace
}  // namespace guest
