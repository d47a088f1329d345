#include "platform/os/os.h"

#include <windows.h>

#include <chrono>
#include <thread>

#include "platform/os/wide_text_windows.h"

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

// A user's own folders are closed to others by inheritance; a file made there is private already.
bool MakePrivateFile(const std::string& path) {
    const HANDLE file =
        CreateFileW(WideOf(path).c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    CloseHandle(file);
    return true;
}

}  // namespace Vantix
