#include "transport/process/passed_text_file_windows.h"

#include <gtest/gtest.h>

#include <aclapi.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace Vantix::transport {
namespace {

std::string ContentOf(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(PassedTextFileTest, FileHoldsExactlyTheText) {
    const std::string text("one\ntwo\r\n\0end", 13);
    const PassedTextFile file(text);
    ASSERT_TRUE(file.IsMade());
    EXPECT_EQ(ContentOf(file.Path()), text);
}

TEST(PassedTextFileTest, FileIsGoneWithTheObject) {
    std::wstring path;
    {
        const PassedTextFile file("text");
        path = file.Path();
        EXPECT_TRUE(std::filesystem::exists(path));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(PassedTextFileTest, NamesDifferAndSayNothing) {
    std::set<std::wstring> names;
    for (int i = 0; i < 20; ++i) {
        const PassedTextFile file("FakePass1");
        EXPECT_EQ(file.Path().find(L"FakePass1"), std::wstring::npos);
        names.insert(file.Path());
    }
    EXPECT_EQ(names.size(), 20U);
}

TEST(PassedTextFileTest, NobodyCanWriteToItWhileItIsThere) {
    const PassedTextFile file("text");
    std::ofstream(std::filesystem::path(file.Path()), std::ios::app) << "more";
    EXPECT_EQ(ContentOf(file.Path()), "text");
}

TEST(PassedTextFileTest, EverybodyIsNotAllowedToReadIt) {
    const PassedTextFile file("text");
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR security = nullptr;
    std::wstring path = file.Path();
    ASSERT_EQ(GetNamedSecurityInfoW(path.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                    nullptr, &list, nullptr, &security),
              ERROR_SUCCESS);
    ASSERT_NE(list, nullptr);  // no list would let everybody in
    SID_IDENTIFIER_AUTHORITY world = {SECURITY_WORLD_SID_AUTHORITY};
    PSID everybody = nullptr;
    AllocateAndInitializeSid(&world, 1, SECURITY_WORLD_RID, 0, 0, 0, 0, 0, 0, 0, &everybody);
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        ASSERT_NE(GetAce(list, i, &entry), 0);
        const auto* allowed = static_cast<const ACCESS_ALLOWED_ACE*>(entry);
        if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE) continue;
        const bool is_everybody = EqualSid(const_cast<DWORD*>(&allowed->SidStart), everybody) != 0;
        EXPECT_FALSE(is_everybody && (allowed->Mask & FILE_READ_DATA) != 0);
    }
    FreeSid(everybody);
    LocalFree(security);
}

}  // namespace
}  // namespace Vantix::transport
