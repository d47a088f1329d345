#include "service/update_scan_service/detail/ascii_case.h"

#include <gtest/gtest.h>

#include <string>

namespace service::detail {
namespace {

TEST(AsciiCaseTest, LettersChangeAndEverythingElseStays) {
    EXPECT_EQ(AsciiUpper("aZ0-_@[`{"), "AZ0-_@[`{");
    EXPECT_EQ(AsciiLower("aZ0-_@[`{"), "az0-_@[`{");
    EXPECT_EQ(AsciiLower(""), "");
}

TEST(AsciiCaseTest, BytesOutsideAsciiStay) {
    const std::string letters = "\xC3\x84\xC3\xA4\xFF";  // both cases of a letter, no letter at all
    EXPECT_EQ(AsciiUpper(letters), letters);
    EXPECT_EQ(AsciiLower(letters), letters);
}

}  // namespace
}  // namespace service::detail
