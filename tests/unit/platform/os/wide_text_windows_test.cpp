#include "platform/os/wide_text_windows.h"

#include <gtest/gtest.h>

namespace Vantix {
namespace {

TEST(WideTextTest, TextsOfBothFormsBecomeEachOther) {
    EXPECT_EQ(WideOf("a\xC3\xBC\xF0\x9F\x99\x82"), L"a\u00FC\U0001F642");
    EXPECT_EQ(Utf8Of(L"a\u00FC\U0001F642"), "a\xC3\xBC\xF0\x9F\x99\x82");
    EXPECT_EQ(WideOf(""), L"");
    EXPECT_EQ(Utf8Of(L""), "");
}

TEST(WideTextTest, BytesThatAreNoTextAreShownAsSuch) {
    EXPECT_EQ(WideOf("a\xFFz"), L"a\uFFFDz");
}

}  // namespace
}  // namespace Vantix
