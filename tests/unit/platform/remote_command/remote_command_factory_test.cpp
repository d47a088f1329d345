#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/remote_command/remote_command.h"
#include "support/temporary_folder.h"

namespace Vantix {
namespace {

class RemoteCommandFactoryTest : public testing::Test {
  protected:
    std::string ErrorOf(const std::string& uri, const std::string& output_dir,
                        const std::string& package_dir) const {
        try {
            RemoteCommandFactory::create(Uri(uri, false), output_dir, package_dir, false);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return {};
    }

    test_support::TemporaryFolder folder_;
};

TEST_F(RemoteCommandFactoryTest, ChannelIsMadeWithoutContactingAnybody) {
    EXPECT_EQ(ErrorOf("ssh://host.invalid", folder_.Path(""), ""), "");
    EXPECT_EQ(ErrorOf("ssh://host.invalid", "", folder_.Path("")), "");
}

TEST_F(RemoteCommandFactoryTest, OtherSchemeIsRefused) {
    EXPECT_EQ(ErrorOf("telnet://host", folder_.Path(""), ""),
              "Remote machines are reached over SSH only, not over telnet.");
}

TEST_F(RemoteCommandFactoryTest, MissingFoldersAreRefused) {
    EXPECT_EQ(ErrorOf("ssh://host", folder_.Path("no"), ""),
              "The output folder \"" + folder_.Path("no") + "\" is no folder.");
    EXPECT_EQ(ErrorOf("ssh://host", folder_.Path(""), folder_.Path("no")),
              "The package folder \"" + folder_.Path("no") + "\" is no folder.");
}

}  // namespace
}  // namespace Vantix
