#include "transport/process/passed_text_file_windows.h"

#include <windows.h>

#include <sddl.h>

#include <random>

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
    SECURITY_ATTRIBUTES security{};
    security.nLength = sizeof(security);
    // Protected from inherited entries; full access for the owner alone ("OW": owner rights).
    if (path.empty() ||
        ConvertStringSecurityDescriptorToSecurityDescriptorW(
            L"D:P(A;;FA;;;OW)", SDDL_REVISION_1, &security.lpSecurityDescriptor, nullptr) == 0) {
        return;
    }
    const OwnedHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, &security, CREATE_NEW,
                                       FILE_ATTRIBUTE_TEMPORARY, nullptr));
    LocalFree(security.lpSecurityDescriptor);
    if (!file.IsOpen()) return;
    path_ = path;
    DWORD written = 0;
    const auto size = static_cast<DWORD>(text.size());
    if (WriteFile(file.Get(), text.data(), size, &written, nullptr) == 0 || written != size) {
        DeleteFileW(path_.c_str());
        path_.clear();
    }
}

PassedTextFile::~PassedTextFile() {
    if (IsMade()) DeleteFileW(path_.c_str());
}

}  // namespace Vantix::transport
