// Who this process runs as, in the form that access lists name users by. For the Windows sources
// alone.
#pragma once

#include <windows.h>

#include <sddl.h>

#include <cstddef>
#include <string>
#include <vector>

namespace Vantix {

/// The user's security identifier ("S-1-5-21-...", [MS-DTYP] 2.4.2.1); empty when Windows does not
/// tell it. The owner of a new file is no help: for an administrator that is a whole group.
[[nodiscard]] inline std::wstring OwnIdentity() {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) return {};
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<std::byte> memory(size);
    const bool is_told =
        size > 0 && GetTokenInformation(token, TokenUser, memory.data(), size, &size) != 0;
    CloseHandle(token);
    wchar_t* text = nullptr;
    if (!is_told || ConvertSidToStringSidW(
                        reinterpret_cast<const TOKEN_USER*>(memory.data())->User.Sid, &text) == 0) {
        return {};
    }
    std::wstring identity(text);
    LocalFree(text);
    return identity;
}

}  // namespace Vantix
