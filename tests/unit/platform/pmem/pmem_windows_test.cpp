// The real calls. An emulated Windows has no ACPI tables and so no modules: what counts is that the
// calls come back, and that a table which every machine has is got whole where there is one.
#include <gtest/gtest.h>

#include "common/result/result_codes.h"
#include "platform/local/acpi_table.h"
#include "platform/pmem/pmem.h"

namespace {

TEST(PmemWindowsTest, TableIsTheOneThatWasAskedFor) {
    const auto table = Vantix::local::RunningAcpiTable("FACP");
    if (!table) GTEST_SKIP() << "this system shows no ACPI tables (an emulated Windows has none)";
    ASSERT_GE(table->size(), 36U);
    EXPECT_EQ(table->substr(0, 4), "FACP");
}

TEST(PmemWindowsTest, MissingTableIsNone) {
    EXPECT_FALSE(Vantix::local::RunningAcpiTable("ZZZZ"));
}

TEST(PmemWindowsTest, ThisMachineIsReadWithoutHarm) {
    std::vector<Vantix::VantixOptions::SoftwareIdentity_> list;
    EXPECT_EQ(PmemManger().GetSoftwareIdentity(list), SUCCEED);
}

}  // namespace
