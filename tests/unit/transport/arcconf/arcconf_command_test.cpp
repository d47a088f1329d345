#include "transport/arcconf/arcconf_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantix::transport {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ArcconfCommandTest, ListAsksForNothingElse) {
    const Command command = ArcconfListCommand("/opt/arcconf");
    EXPECT_EQ(command.program, "/opt/arcconf");
    EXPECT_THAT(command.arguments, ElementsAre("list"));
}

TEST(ArcconfCommandTest, AdapterAndDisksAreAskedByNumber) {
    EXPECT_THAT(ArcconfAdapterCommand("a", 12).arguments, ElementsAre("getconfig", "12", "AD"));
    EXPECT_THAT(ArcconfDisksCommand("a", 1).arguments, ElementsAre("getconfig", "1", "PD"));
}

TEST(ArcconfCommandTest, VersionsAndReleaseHaveTheirCommands) {
    EXPECT_THAT(ArcconfVersionsCommand("a").arguments, ElementsAre("getversion"));
    EXPECT_THAT(ArcconfReleaseCommand("a").arguments, IsEmpty());
}

TEST(ArcconfCommandTest, EveryRunHasItsEnd) {
    EXPECT_EQ(ArcconfDisksCommand("a", 1).time_limit, std::chrono::seconds(60));
}

}  // namespace
}  // namespace Vantix::transport
