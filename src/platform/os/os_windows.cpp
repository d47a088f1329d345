#include "platform/os/os.h"

#include <windows.h>

#include <sddl.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string_view>
#include <thread>

#include "common/files/own_identity_windows.h"
#include "platform/os/wide_text_windows.h"

// A macro of the system's headers that would rename our own function.
#undef ReplaceFile

namespace Vantix {
namespace {

// The buffer grows until the whole name fits: paths are not limited to MAX_PATH.
std::wstring FileOfModule(HMODULE module) {
    constexpr std::size_t kLongestPath = 32768;
    std::wstring path(MAX_PATH, L'\0');
    while (true) {
        const DWORD length =
            GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return {};
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        if (path.size() >= kLongestPath) return {};
        path.resize(path.size() * 2);
    }
}

std::string FindModuleDirectory() {
    HMODULE module = nullptr;
    const auto* own_address = reinterpret_cast<const wchar_t*>(&FindModuleDirectory);
    const DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExW(flags, own_address, &module) == 0) return {};
    return DirectoryOfModuleFile(Utf8Of(FileOfModule(module)));
}

bool WriteAll(HANDLE file, std::string_view text) {
    constexpr std::size_t kStep = 1U << 20U;
    while (!text.empty()) {
        const auto size = static_cast<DWORD>(std::min(text.size(), kStep));
        DWORD written = 0;
        if (WriteFile(file, text.data(), size, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        text.remove_prefix(written);
    }
    return true;
}

HANDLE OpenOrMake(const std::string& path, DWORD access) {
    return CreateFileW(WideOf(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                       OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// The folder may leave its files to more people than this user, the administrators and the system.
void CloseToOthers(HANDLE file) {
    const std::wstring own = OwnIdentity();
    if (own.empty()) return;
    const std::wstring list = L"D:P(A;;FA;;;SY)(A;;FA;;;BA)(A;;FA;;;" + own + L")";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (ConvertStringSecurityDescriptorToSecurityDescriptorW(list.c_str(), SDDL_REVISION_1,
                                                             &descriptor, nullptr) == 0) {
        return;
    }
    SetKernelObjectSecurity(file, DACL_SECURITY_INFORMATION, descriptor);
    LocalFree(descriptor);
}

}  // namespace

std::string GetModuleDirectory() {
    static const std::string directory = FindModuleDirectory();
    return directory;
}

std::string DirectoryOfModuleFile(const std::string& module_file) {
    const std::size_t separator = module_file.find_last_of("\\/");
    return separator == std::string::npos ? std::string() : module_file.substr(0, separator + 1);
}

void SleepMilliseconds(std::uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::int64_t MonotonicSeconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

bool MakePrivateFile(const std::string& path) {
    HANDLE file = OpenOrMake(path, FILE_APPEND_DATA | WRITE_DAC);
    // The list of somebody else's file is not ours to change.
    if (file == INVALID_HANDLE_VALUE) file = OpenOrMake(path, FILE_APPEND_DATA);
    if (file == INVALID_HANDLE_VALUE) return false;
    // Never touch that of a device.
    if (GetFileType(file) == FILE_TYPE_DISK) CloseToOthers(file);
    CloseHandle(file);
    return true;
}

bool ReplaceFile(const std::string& path, const std::string& text) {
    std::random_device random;
    const std::wstring wide_path = WideOf(path);
    const std::wstring aside = wide_path + L"." + std::to_wstring(random()) + L".new";
    // A name that somebody has guessed and taken is refused.
    const HANDLE file = CreateFileW(aside.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const bool is_written = WriteAll(file, text);
    const bool is_closed = CloseHandle(file) != 0;
    if (is_written && is_closed &&
        MoveFileExW(aside.c_str(), wide_path.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) {
        return true;
    }
    DeleteFileW(aside.c_str());
    return false;
}

}  // namespace Vantix
