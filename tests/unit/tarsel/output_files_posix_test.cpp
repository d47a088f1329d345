#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tarsel/output_files.h"

namespace tarsel {
namespace {

TEST(OutputFilesPosixTest, FolderThatTakesNoFilesIsTold) {
    EXPECT_THAT(PrepareOutputFolder("/proc"), testing::HasSubstr("/proc is not writable"));
}

}  // namespace
}  // namespace tarsel
