#include "platform/local/smbios_tables.h"

#include <gtest/gtest.h>

#include <string>

#include "support/smbios_builder.h"
#include "support/system_tree.h"
#include "support/unprivileged_user.h"
#include "transport/smbios/smbios_records.h"

namespace {

using test_support::AnSmbiosStructure;
using test_support::AnSmbiosTable;
using test_support::SystemTree;
using test_support::UnprivilegedUser;
using Vantix::local::HasSmbios;
using Vantix::local::ReadSmbios;
using Vantix::transport::SystemRoot;

const std::string kTables = "/sys/firmware/dmi/tables/";
const std::string kEntries = "/sys/firmware/dmi/entries/";

TEST(SmbiosTablesTest, WholeTableIsPreferred) {
    SystemTree tree;
    tree.File(kTables + "DMI", AnSmbiosTable().System({"Maker", "Rack 1"}).Bytes());
    tree.File(kEntries + "1-0/raw", AnSmbiosStructure(1, 8).Text(5, "other").Bytes());
    const auto all = ReadSmbios(SystemRoot(tree.Root()));
    EXPECT_EQ(Vantix::transport::ReadSmbiosSystem(all).product_name, "Rack 1");
}

TEST(SmbiosTablesTest, EntryPointLimitsTheTable) {
    const std::string system = AnSmbiosStructure(1, 8).Text(5, "Rack 1").Bytes();
    SystemTree tree;
    tree.File(kTables + "DMI", system + AnSmbiosStructure(9, 16).Bytes());
    tree.File(kTables + "smbios_entry_point", AnSmbiosTable::EntryPoint(system.size()));
    EXPECT_EQ(ReadSmbios(SystemRoot(tree.Root())).size(), 1u);
}

TEST(SmbiosTablesTest, WithoutTableTheEntriesAreReadInTheirOrder) {
    SystemTree tree;
    for (int i : {10, 2}) {
        tree.File(kEntries + "9-" + std::to_string(i) + "/raw",
                  AnSmbiosTable().Slot("Slot " + std::to_string(i), i, 0, i, 0).Bytes());
    }
    tree.File(kEntries + "1-0/raw", AnSmbiosStructure(1, 8).Text(5, "Rack 1").Bytes());
    const auto all = ReadSmbios(SystemRoot(tree.Root()));
    const auto slots = Vantix::transport::ReadSmbiosSlots(all);
    ASSERT_EQ(slots.size(), 2u);
    EXPECT_EQ(slots[0].designation, "Slot 2");
    EXPECT_EQ(slots[1].designation, "Slot 10");
    EXPECT_EQ(Vantix::transport::ReadSmbiosSystem(all).product_name, "Rack 1");
}

TEST(SmbiosTablesTest, EntriesOfOtherTypesAndNamesAreLeftOut) {
    SystemTree tree;
    for (const char* name : {"16-0", "9", "-1", "x-1", "99999999999-0", "190-9"}) {
        tree.File(kEntries + name + "/raw", AnSmbiosStructure(9, 16).Bytes());
    }
    EXPECT_TRUE(ReadSmbios(SystemRoot(tree.Root())).empty());
}

TEST(SmbiosTablesTest, StructuresOfOtherTypesAreLeftOut) {
    SystemTree tree;
    tree.File(kTables + "DMI", AnSmbiosTable().Chassis("Maker", "CH1").System({"Maker"}).Bytes());
    EXPECT_EQ(ReadSmbios(SystemRoot(tree.Root())).size(), 1u);
}

TEST(SmbiosTablesTest, DamagedEmptyAndHugeTablesGiveWhatTheyHold) {
    for (const std::string& table :
         {std::string(), std::string("rubbish"), std::string(5 * 1024 * 1024, '\0'),
          std::string(1000, '\xff')}) {
        SystemTree tree;
        tree.File(kTables + "DMI", table);
        EXPECT_TRUE(ReadSmbios(SystemRoot(tree.Root())).empty()) << table.size();
    }
}

TEST(SmbiosTablesTest, ForbiddenTableIsNotedOnceAndTheEntriesAreLeftAlone) {
    SystemTree tree;
    tree.File(kTables + "DMI", AnSmbiosTable().System({"Maker"}).Bytes());
    tree.File(kEntries + "1-0/raw", AnSmbiosStructure(1, 8).Bytes());
    tree.Forbid(kTables + "DMI");
    const UnprivilegedUser user(tree.Root());
    const SystemRoot root(tree.Root());
    EXPECT_TRUE(ReadSmbios(root).empty());
    EXPECT_EQ(root.DeniedPaths(), std::vector<std::string>{kTables + "DMI"});
}

TEST(SmbiosTablesTest, ForbiddenEntriesAreNotedByOne) {
    SystemTree tree;
    for (const char* name : {"0-0", "1-0", "9-0"}) {
        const std::string path = kEntries + name + "/raw";
        tree.File(path, AnSmbiosStructure(1, 8).Bytes());
        tree.Forbid(path);
    }
    const UnprivilegedUser user(tree.Root());
    const SystemRoot root(tree.Root());
    EXPECT_TRUE(ReadSmbios(root).empty());
    EXPECT_EQ(root.DeniedPaths(), std::vector<std::string>{kEntries + "0-0/raw"});
}

TEST(SmbiosTablesTest, AnyOfTheKernelsFoldersShowsThatThereIsSmbios) {
    for (const char* folder :
         {"/sys/class/dmi/id", "/sys/firmware/dmi/tables/DMI", "/sys/firmware/dmi/entries"}) {
        SystemTree tree;
        tree.Folder(folder);
        EXPECT_TRUE(HasSmbios(SystemRoot(tree.Root()))) << folder;
    }
    EXPECT_FALSE(HasSmbios(SystemRoot(SystemTree().Folder("/sys/class").Root())));
}

}  // namespace
