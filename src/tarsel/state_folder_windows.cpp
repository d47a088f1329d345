#include "tarsel/state_folder.h"

#include <windows.h>

#include <algorithm>

#include "common/files/file_path.h"
#include "platform/os/wide_text_windows.h"

namespace tarsel {
namespace {

std::string LocalData() {
    constexpr const wchar_t* kName = L"LOCALAPPDATA";
    std::wstring value(GetEnvironmentVariableW(kName, nullptr, 0), L'\0');
    const DWORD length =
        GetEnvironmentVariableW(kName, value.data(), static_cast<DWORD>(value.size()));
    value.resize(std::min<std::size_t>(length, value.size()));
    return Vantix::Utf8Of(value);
}

}  // namespace

std::string DurationFile() {
    const std::filesystem::path folder = Vantix::FilePath(LocalData());
    if (!folder.is_absolute()) return {};
    return Vantix::FileName(folder / "tarsel" / "durations.txt");
}

}  // namespace tarsel
