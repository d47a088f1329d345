#include "platform/system_info/driver_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver_tree.h"

namespace Vantix::system_info {
namespace {

using test_support::ModuleFileFor;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using transport::SystemRoot;

const char* const kFolder = "/usr/lib/modules/6.1.0-fake";

class ModuleDescriptionsTest : public testing::Test {
  protected:
    ModuleDescriptionsTest() { tree_.Link("/lib", "usr/lib"); }

    [[nodiscard]] std::map<std::string, std::string> Read(
        const transport::ModuleNames& modules) const {
        return ReadModuleDescriptions(SystemRoot(tree_.Root()), "6.1.0-fake", modules);
    }
    void Add(const std::string& file, const std::string& content) {
        tree_.File(std::string(kFolder) + "/" + file, content);
    }

    DriverTree tree_;
};

TEST_F(ModuleDescriptionsTest, LoadedModuleTellsInItsOwnFile) {
    Add("modules.dep", "kernel/net/fakenet.ko: kernel/lib/crc.ko\n");
    Add("kernel/net/fakenet.ko", ModuleFileFor("Fake Ethernet"));
    EXPECT_THAT(Read({"fakenet"}), ElementsAre(Pair("fakenet", "Fake Ethernet")));
}

TEST_F(ModuleDescriptionsTest, BuiltInModuleTellsInTheKernelsIndex) {
    Add("modules.builtin.modinfo", std::string("fakebus.description=Fake Bus\0", 29));
    EXPECT_THAT(Read({"fakebus"}), ElementsAre(Pair("fakebus", "Fake Bus")));
}

TEST_F(ModuleDescriptionsTest, CompressedAndMissingFilesTellNothing) {
    Add("modules.dep", "kernel/a.ko.xz:\nkernel/b.ko:\n");
    Add("kernel/a.ko.xz",
        "\xfd"
        "7zXZ");
    EXPECT_THAT(Read({"a", "b"}), IsEmpty());
}

TEST_F(ModuleDescriptionsTest, LongIndexIsReadToItsEnd) {
    std::string index;
    while (index.size() < 600'000) index += "kernel/other/module.ko: kernel/other/more.ko\n";
    Add("modules.dep", index + "kernel/last.ko:\n");
    Add("kernel/last.ko", ModuleFileFor("Last"));
    EXPECT_THAT(Read({"last"}), ElementsAre(Pair("last", "Last")));
}

TEST_F(ModuleDescriptionsTest, KernelWithoutFilesTellsNothing) {
    EXPECT_THAT(Read({"a"}), IsEmpty());
    EXPECT_THAT(ReadModuleDescriptions(SystemRoot(tree_.Root()), "", {"a"}), IsEmpty());
}

TEST(DriverDescriptionTest, SourceVersionStandsBehindTheDescription) {
    EXPECT_EQ(DriverDescription("Fake Driver", "1A2B"), "Fake Driver (source version 1A2B)");
    EXPECT_EQ(DriverDescription("Fake Driver", ""), "Fake Driver");
    EXPECT_EQ(DriverDescription("", "1A2B"), "source version 1A2B");
    EXPECT_EQ(DriverDescription("", ""), "");
}

TEST(MissingDriversTest, DeviceIsNamedByItsIdsAndHasNoVersion) {
    const auto records = MissingDrivers({{"0000:03:00.0", "80861521", "020000"}});
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].Identifier, "NoDriver#PCI_80861521");
    EXPECT_EQ(records[0].Version, "");
    EXPECT_EQ(records[0].Description, "Network controller without driver at 0000:03:00.0");
    EXPECT_EQ(records[0].DevicePresent, 1);
}

TEST(MissingDriversTest, SameDevicesAreOneRecord) {
    const auto records = MissingDrivers({{"0000:03:00.0", "80861521", "020000"},
                                         {"0000:04:00.0", "10000060", "010400"},
                                         {"0000:03:00.1", "80861521", "020000"}});
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].DevicePresent, 2);
    EXPECT_EQ(records[0].Description,
              "Network controller without driver at 0000:03:00.0, 0000:03:00.1");
    EXPECT_EQ(records[1].Identifier, "NoDriver#PCI_10000060");
}

TEST(MissingDriversTest, LongListOfPlacesIsCut) {
    const std::vector<DriverlessDevice> devices(7, {"A", "80861521", "ff0000"});
    const auto records = MissingDrivers(devices);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].DevicePresent, 7);
    EXPECT_EQ(records[0].Description, "Device without driver at A, A, A, A and more");
}

}  // namespace
}  // namespace Vantix::system_info
