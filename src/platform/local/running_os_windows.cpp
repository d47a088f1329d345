#include "platform/local/running_os.h"

#include <windows.h>

#include <string>

#include "platform/local/windows_name.h"

namespace Vantix::local {
namespace {

using RtlGetVersionCall = LONG(WINAPI*)(OSVERSIONINFOEXW*);

// The documented version calls tell programs without a fitting manifest of an older system.
bool ReadVersion(OSVERSIONINFOEXW& version) {
    version = {};
    version.dwOSVersionInfoSize = sizeof(version);
    const HMODULE module = GetModuleHandleW(L"ntdll.dll");
    if (module == nullptr) return false;
    const auto call =
        reinterpret_cast<RtlGetVersionCall>(  // through void: the kinds of functions differ
            reinterpret_cast<void*>(GetProcAddress(module, "RtlGetVersion")));
    return call != nullptr && call(&version) == 0;
}

// The number of the last update, which the version calls leave out; empty when not told.
std::string UpdateRevision() {
    DWORD revision = 0;
    DWORD size = sizeof(revision);
    const LSTATUS status =
        RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion", L"UBR",
                     RRF_RT_REG_DWORD, nullptr, &revision, &size);
    return status == ERROR_SUCCESS ? "." + std::to_string(revision) : std::string();
}

}  // namespace

std::optional<OsName> RunningOs() {
    OSVERSIONINFOEXW version;
    if (!ReadVersion(version)) return OsName{};
    OsName os;
    os.name = WindowsName(version.dwBuildNumber, version.wProductType != VER_NT_WORKSTATION);
    os.minor_version = std::to_string(version.dwBuildNumber) + UpdateRevision();
    return os;
}

}  // namespace Vantix::local
