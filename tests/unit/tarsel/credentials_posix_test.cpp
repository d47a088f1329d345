// Modes of password files, and descriptors that are pipes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/temporary_folder.h"
#include "tarsel/credentials.h"

namespace tarsel {
namespace {

using testing::HasSubstr;

class CredentialsPosixTest : public testing::Test {
  protected:
    PasswordResult Find() {
        return FindPassword(arguments_, [] { return false; });
    }

    test_support::TemporaryFolder folder_;
    ScanArguments arguments_;
};

class CredentialsModeTest : public CredentialsPosixTest, public testing::WithParamInterface<int> {};

TEST_P(CredentialsModeTest, FileOpenToOthersIsRefusedWithTheCure) {
    const std::string file = folder_.Write("secret", "FakePass1\n");
    ASSERT_EQ(chmod(file.c_str(), static_cast<mode_t>(GetParam())), 0);
    arguments_.password.file = file;
    const PasswordResult result = Find();
    EXPECT_FALSE(result.is_found);
    EXPECT_TRUE(result.password.empty());
    EXPECT_THAT(result.error, HasSubstr("chmod 600"));
}

INSTANTIATE_TEST_SUITE_P(Modes, CredentialsModeTest, testing::Values(0640, 0604, 0620, 0602, 0777));

TEST_F(CredentialsPosixTest, DescriptorGivesItsFirstLineAndKeepsTheRest) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(write(ends[1], "FakePass1\nrest", 14), 14);
    arguments_.password.descriptor = ends[0];
    EXPECT_EQ(Find().password, "FakePass1");
    char rest[8] = {};
    EXPECT_EQ(read(ends[0], rest, sizeof rest), 4);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(CredentialsPosixTest, ClosedDescriptorGivesNoPassword) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    close(ends[1]);
    arguments_.password.descriptor = ends[0];
    EXPECT_THAT(Find().error, HasSubstr("is empty"));
    close(ends[0]);
}

}  // namespace
}  // namespace tarsel
