#include "transport/modinfo/module_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::string Entries(std::string text) {
    for (char& letter : text) {
        if (letter == '|') letter = '\0';
    }
    return text;
}

TEST(ModuleNameTest, DashesAreUnderscores) {
    EXPECT_EQ(ModuleName("snd-hda-intel"), "snd_hda_intel");
}

TEST(ModulePathsTest, WantedModulesAreFoundUnderEachName) {
    const std::string text =
        "kernel/drivers/net/fake-net.ko: kernel/lib/crc.ko\n"
        "kernel/lib/crc.ko:\n"
        "updates/dkms/other.ko.xz: kernel/lib/crc.ko\n";
    EXPECT_THAT(ParseModulePaths(text, {"fake_net", "other"}),
                ElementsAre(Pair("fake_net", "kernel/drivers/net/fake-net.ko"),
                            Pair("other", "updates/dkms/other.ko.xz")));
}

TEST(ModulePathsTest, FirstOfTwoFilesCounts) {
    EXPECT_THAT(ParseModulePaths("updates/a.ko:\nkernel/a.ko:\n", {"a"}),
                ElementsAre(Pair("a", "updates/a.ko")));
}

TEST(ModulePathsTest, PathsOutOfTheFolderAreNotTaken) {
    EXPECT_THAT(ParseModulePaths("/etc/a.ko:\n../../a.ko:\n", {"a"}), IsEmpty());
}

TEST(ModulePathsTest, RubbishHasNone) {
    EXPECT_THAT(ParseModulePaths(":\n\n::::\n\x01\xff", {"", "a"}), IsEmpty());
    EXPECT_THAT(ParseModulePaths("", {"a"}), IsEmpty());
}

TEST(BuiltinDescriptionsTest, WantedOnesAreFound) {
    const std::string text = Entries(
        "a.license=GPL|a.description=Fake bus|b-c.description=Fake "
        "card|d.description=Unasked|");
    EXPECT_THAT(ParseBuiltinDescriptions(text, {"a", "b_c"}),
                ElementsAre(Pair("a", "Fake bus"), Pair("b_c", "Fake card")));
}

TEST(BuiltinDescriptionsTest, FirstOfTwoCountsAndControlBytesGo) {
    const std::string text = Entries(
        "a.description=On\x01"
        "e|a.description=Two|");
    EXPECT_THAT(ParseBuiltinDescriptions(text, {"a"}), ElementsAre(Pair("a", "On e")));
}

TEST(BuiltinDescriptionsTest, EntryWithoutEndIsTaken) {
    EXPECT_THAT(ParseBuiltinDescriptions("a.description=Fake", {"a"}),
                ElementsAre(Pair("a", "Fake")));
}

TEST(BuiltinDescriptionsTest, RubbishHasNone) {
    EXPECT_THAT(ParseBuiltinDescriptions(Entries("|||description=|=|"), {"", "a"}), IsEmpty());
}

}  // namespace
}  // namespace Vantix::transport
