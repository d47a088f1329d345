#include "common/files/file_path.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/temporary_folder.h"

namespace Vantix {
namespace {

TEST(FilePathTest, NamesSurviveTheWayToThePathAndBack) {
    for (const std::string name : {"plain.xml", "gr\xC3\xBC\xC3\x9F.xml", "\xE6\x9C\x8D.log"}) {
        EXPECT_EQ(FileName(FilePath(name)), name);
    }
}

TEST(FilePathTest, FilesOfAnyNameCanBeWrittenAndRead) {
    const test_support::TemporaryFolder folder;
    const auto path = FilePath(folder.Path("")) / FilePath("\xC3\xBC \xE6\x9C\x8D.txt");
    std::ofstream(path, std::ios::binary) << "found";
    std::string text;
    std::ifstream(path, std::ios::binary) >> text;
    EXPECT_EQ(text, "found");
}

}  // namespace
}  // namespace Vantix
