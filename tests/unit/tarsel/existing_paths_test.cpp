#include "tarsel/existing_paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "common/files/file_path.h"
#include "support/temporary_folder.h"

namespace tarsel {
namespace {

constexpr const char* kForeignName = "\xC3\xBC \xE4\xB8\xAD";

class ExistingPathsTest : public testing::Test {
  protected:
    [[nodiscard]] std::string Path(const std::string& name) const {
        return folder_.Path("") + "/" + name;
    }

    void WriteFile(const std::string& name) const {
        std::ofstream(Vantix::FilePath(Path(name)), std::ios::binary) << "x";
    }

  private:
    test_support::TemporaryFolder folder_;
};

TEST_F(ExistingPathsTest, FileOfAnyNameIsFound) {
    for (const char* const name : {"plain", kForeignName}) {
        WriteFile(name);
        EXPECT_EQ(CheckExistingFile(Path(name)), "");
        EXPECT_EQ(CheckExistingFolder(Path(name)), "Directory is actually a file: " + Path(name));
    }
}

TEST_F(ExistingPathsTest, FolderOfAnyNameIsFound) {
    for (const char* const name : {"plain", kForeignName}) {
        std::filesystem::create_directory(Vantix::FilePath(Path(name)));
        EXPECT_EQ(CheckExistingFolder(Path(name)), "");
        EXPECT_EQ(CheckExistingFile(Path(name)), "File is actually a directory: " + Path(name));
    }
}

TEST_F(ExistingPathsTest, MissingNameIsTold) {
    EXPECT_EQ(CheckExistingFile(Path(kForeignName)), "File does not exist: " + Path(kForeignName));
    EXPECT_EQ(CheckExistingFolder(Path("no")), "Directory does not exist: " + Path("no"));
    EXPECT_NE(CheckExistingFile(""), "");
    EXPECT_NE(CheckExistingFolder(""), "");
}

}  // namespace
}  // namespace tarsel
