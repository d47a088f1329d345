#include "platform/os/os.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string_view>
#include <thread>

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
