#include "tarsel/output_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "support/temporary_folder.h"

namespace tarsel {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;

class OutputFilesTest : public testing::Test {
  protected:
    [[nodiscard]] std::size_t FilesInFolder() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder_.Path("")), fs::directory_iterator()));
    }
    test_support::TemporaryFolder folder_;
};

TEST_F(OutputFilesTest, MissingFolderIsMadeWithItsParents) {
    EXPECT_THAT(PrepareOutputFolder(folder_.Path("a/b/c")), IsEmpty());
    EXPECT_TRUE(fs::is_directory(folder_.Path("a/b/c")));
}

TEST_F(OutputFilesTest, ProbeLeavesNothingBehind) {
    EXPECT_THAT(PrepareOutputFolder(folder_.Path("")), IsEmpty());
    EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(OutputFilesTest, FileInPlaceOfTheFolderIsToldWithTheCure) {
    const std::string error = PrepareOutputFolder(folder_.Write("file", ""));
    EXPECT_THAT(error, HasSubstr(folder_.Path("file")));
    EXPECT_THAT(error, HasSubstr("--output DIR"));
}

TEST_F(OutputFilesTest, FileIsReplacedAsAWhole) {
    folder_.Write("x.xml", "a former and longer content");
    EXPECT_TRUE(WriteFileAtomically(folder_.Path("x.xml"), "new"));
    EXPECT_EQ(folder_.Read("x.xml"), "new");
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(OutputFilesTest, FailedReplacementLeavesNoRest) {
    fs::create_directories(folder_.Path("x.xml/occupied"));
    EXPECT_FALSE(WriteFileAtomically(folder_.Path("x.xml"), "new"));
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(OutputFilesTest, WritingIntoAMissingFolderFails) {
    EXPECT_FALSE(WriteFileAtomically(folder_.Path("no/such/x.xml"), "new"));
}

TEST_F(OutputFilesTest, ScanFileOfAnEarlierRunIsSetAside) {
    folder_.Write(kScanXmlName, "earlier");
    EXPECT_TRUE(SetAsideOldScanXml(folder_.Path("")));
    EXPECT_FALSE(fs::exists(folder_.Path(kScanXmlName)));
    EXPECT_EQ(folder_.Read(std::string(kScanXmlName) + ".old"), "earlier");
}

TEST_F(OutputFilesTest, WithoutAnEarlierScanFileNothingIsSetAside) {
    EXPECT_FALSE(SetAsideOldScanXml(folder_.Path("")));
    EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(OutputFilesTest, FetchedScanFileDoesNotTakeThePlaceOfTheEarlierOne) {
    const auto started = std::chrono::system_clock::now() - std::chrono::minutes(1);
    folder_.Write("Tarsel-update-scan.xml.old", "earlier");
    folder_.Write("Tarsel-update-scan.xml", "fetched");
    EXPECT_TRUE(SetAsideFetchedScanXml(folder_.Path(""), started));
    EXPECT_EQ(folder_.Read("Tarsel-update-scan.xml.remote"), "fetched");
    EXPECT_EQ(folder_.Read("Tarsel-update-scan.xml.old"), "earlier");
    EXPECT_FALSE(SetAsideFetchedScanXml(folder_.Path(""), started));
}

TEST_F(OutputFilesTest, FileFetchedRightAfterTheStartIsAFetchedOne) {
    const auto started = std::chrono::system_clock::now();
    folder_.Write("Tarsel-update-scan.xml", "fetched");
    EXPECT_TRUE(SetAsideFetchedScanXml(folder_.Path(""), started));
}

TEST_F(OutputFilesTest, ScanFileOfAnEarlierRunIsNoFetchedOne) {
    const auto started = std::chrono::system_clock::now() + std::chrono::minutes(1);
    folder_.Write("Tarsel-update-scan.xml", "earlier");
    EXPECT_FALSE(SetAsideFetchedScanXml(folder_.Path(""), started));
    EXPECT_EQ(folder_.Read("Tarsel-update-scan.xml"), "earlier");
}

}  // namespace
}  // namespace tarsel
