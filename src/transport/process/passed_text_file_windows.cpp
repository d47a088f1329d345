#include "transport/process/passed_text_file_windows.h"

#include <windows.h>

#include <sddl.h>

#include <cstddef>
#include <random>
#include <vector>

namespace Vantix::transport {
namespace {

std::wstring FreshPath() {
    wchar_t folder[MAX_PATH + 1] = {};
    const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
    if (length == 0 || length > MAX_PATH) return {};
    std::random_device random;
    std::wstring name = std::wstring(folder, length) + L"tarsel-";
    for (int part = 0; part < 4; ++part) name += std::to_wstring(random());
    return name + L".txt";
}

// As "S-1-5-...". The owner of a new file is no help: for an administrator that is a whole group.
std::wstring OwnUser() {
    OwnedHandle token;
    DWORD size = 0;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Slot()) == 0) return {};
    GetTokenInformation(token.Get(), TokenUser, nullptr, 0, &size);
    std::vector<std::byte> bytes(size);
    wchar_t* text = nullptr;
    if (GetTokenInformation(token.Get(), TokenUser, bytes.data(), size, &size) == 0 ||
        ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(bytes.data())->User.Sid,
                               &text) == 0) {
        return {};
    }
    std::wstring user = text;
    LocalFree(text);
    return user;
}

}  // namespace

PassedTextFile::PassedTextFile(const std::string& text) {
    const std::wstring path = FreshPath();
    // Protected from inherited entries; full access for this user alone.
    const std::wstring access = L"D:P(A;;FA;;;" + OwnUser() + L")";
    SECURITY_ATTRIBUTES security{};
    security.nLength = sizeof(security);
    if (path.empty() ||
        ConvertStringSecurityDescriptorToSecurityDescriptorW(
            access.c_str(), SDDL_REVISION_1, &security.lpSecurityDescriptor, nullptr) == 0) {
        return;
    }
    OwnedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, &security, CREATE_NEW,
                                 FILE_ATTRIBUTE_TEMPORARY, nullptr));
    LocalFree(security.lpSecurityDescriptor);
    if (!file.IsOpen()) return;
    path_ = path;
    DWORD written = 0;
    const auto size = static_cast<DWORD>(text.size());
    if (WriteFile(file.Get(), text.data(), size, &written, nullptr) == 0 || written != size) {
        file.Close();
        DeleteFileW(path_.c_str());
        path_.clear();
        return;
    }
    file.Close();
    *reading_.Slot() = CreateFileW(path_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

PassedTextFile::~PassedTextFile() {
    reading_.Close();
    if (IsMade()) DeleteFileW(path_.c_str());
}

}  // namespace Vantix::transport
