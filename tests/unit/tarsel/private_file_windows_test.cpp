// Which access lists make a password file one that others may use.
#include "tarsel/private_file_windows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "file_access_windows.h"
#include "support/temporary_folder.h"
#include "tarsel/credentials.h"
#include "tarsel/terminal.h"

namespace tarsel {
namespace {

class PrivateFileTest : public testing::Test {
  protected:
    PrivateFileTest() : file_(folder_.Write("secret", "FakePass1\r\nsecond line\r\n")) {}

    ReadState StateWith(const std::vector<AccessEntry>& entries) {
        SetAccess(file_, entries);
        return ReadPrivateFileLine(file_, line_);
    }

    static constexpr AccessEntry kOwner{WinNullSid, FILE_ALL_ACCESS};

    test_support::TemporaryFolder folder_;
    std::string file_;
    std::string line_;
};

TEST_F(PrivateFileTest, FileOfItsOwnerAloneIsRead) {
    EXPECT_EQ(StateWith({kOwner}), ReadState::kOk);
    EXPECT_EQ(line_, "FakePass1");
}

TEST_F(PrivateFileTest, AdministratorsAndTheSystemMayReadItToo) {
    EXPECT_EQ(StateWith({kOwner,
                         {WinBuiltinAdministratorsSid, FILE_ALL_ACCESS},
                         {WinLocalSystemSid, FILE_ALL_ACCESS}}),
              ReadState::kOk);
}

TEST_F(PrivateFileTest, FileThatEverybodyMayReadIsRefused) {
    EXPECT_EQ(StateWith({kOwner, {WinWorldSid, FILE_GENERIC_READ}}), ReadState::kTooOpen);
    EXPECT_EQ(line_, "");
}

TEST_F(PrivateFileTest, FileThatEverybodyMayWriteIsRefused) {
    EXPECT_EQ(StateWith({kOwner, {WinWorldSid, FILE_GENERIC_WRITE}}), ReadState::kTooOpen);
}

TEST_F(PrivateFileTest, CureIsOneOfThisSystem) {
    SetAccess(file_, {kOwner, {WinWorldSid, FILE_GENERIC_READ}});
    ScanArguments arguments;
    arguments.password.file = file_;
    const PasswordResult result = FindPassword(arguments, [] { return false; });
    EXPECT_FALSE(result.is_found);
    EXPECT_THAT(result.error, testing::HasSubstr("run icacls on it"));
}

TEST_F(PrivateFileTest, FirstLineOfAFileOfAnyNameIsRead) {
    const std::string file = folder_.Write("plain", "FakePass2");
    const std::string other = folder_.Path("") + "\xC3\xBC\xE4\xB8\xAD";
    std::filesystem::rename(file, std::u8string(other.begin(), other.end()));
    SetAccess(other, {kOwner});
    EXPECT_EQ(ReadPrivateFileLine(other, line_), ReadState::kOk);
    EXPECT_EQ(line_, "FakePass2");
}

}  // namespace
}  // namespace tarsel
