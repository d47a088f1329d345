#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tarsel/state_folder.h"

namespace tarsel {
namespace {

class StateFolderTest : public testing::Test {
  protected:
    StateFolderTest() : former_(32768, L'\0') {
        former_.resize(GetEnvironmentVariableW(kName, former_.data(), 32768));
    }
    ~StateFolderTest() override { SetEnvironmentVariableW(kName, former_.c_str()); }

    static std::string DurationFileWith(const wchar_t* local_data) {
        SetEnvironmentVariableW(kName, local_data);
        return DurationFile();
    }

  private:
    static constexpr const wchar_t* kName = L"LOCALAPPDATA";
    std::wstring former_;
};

TEST_F(StateFolderTest, LocalDataOfTheUserHoldIt) {
    EXPECT_EQ(DurationFileWith(L"C:\\Users\\me"), "C:\\Users\\me\\tarsel\\durations.txt");
}

TEST_F(StateFolderTest, FolderMayHaveAnyName) {
    EXPECT_EQ(DurationFileWith(L"C:\\\u00fc\u4e2d"),
              "C:\\\xC3\xBC\xE4\xB8\xAD\\tarsel\\durations.txt");
}

TEST_F(StateFolderTest, WithoutAnAbsoluteFolderNothingIsRemembered) {
    EXPECT_EQ(DurationFileWith(nullptr), "");
    EXPECT_EQ(DurationFileWith(L""), "");
    EXPECT_EQ(DurationFileWith(L"relative"), "");
}

}  // namespace
}  // namespace tarsel
