#include "transport/process/passed_text_file_windows.h"

#include <windows.h>

#include <sddl.h>

#include <random>

#include "common/files/own_identity_windows.h"

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

}  // namespace

PassedTextFile::PassedTextFile(const std::string& text) {
    const std::wstring path = FreshPath();
    // Protected from inherited entries; full access for this user alone.
    const std::wstring access = L"D:P(A;;FA;;;" + OwnIdentity() + L")";
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
