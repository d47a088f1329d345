#include "tarsel/private_file_windows.h"

#include <aclapi.h>

#include <memory>

namespace tarsel {
namespace {

struct FreeLocal {
    void operator()(void* memory) const { LocalFree(memory); }
};

bool IsTrusted(PSID who, PSID owner) {
    return EqualSid(who, owner) != 0 || IsWellKnownSid(who, WinBuiltinAdministratorsSid) != 0 ||
           IsWellKnownSid(who, WinLocalSystemSid) != 0 ||
           IsWellKnownSid(who, WinCreatorOwnerSid) != 0;
}

bool GivesAccessToOthers(PACL list, DWORD index, PSID owner) {
    void* entry = nullptr;
    if (GetAce(list, index, &entry) == 0) return true;
    const auto* header = static_cast<const ACE_HEADER*>(entry);
    if (header->AceType == ACCESS_DENIED_ACE_TYPE) return false;
    // Kinds of entries beside the plain one are rare on files; they count as access.
    if (header->AceType != ACCESS_ALLOWED_ACE_TYPE) return true;
    auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
    // Who may write could put another password there.
    constexpr DWORD kAccess = FILE_READ_DATA | FILE_WRITE_DATA | FILE_APPEND_DATA | WRITE_DAC |
                              WRITE_OWNER | GENERIC_READ | GENERIC_WRITE | GENERIC_ALL;
    return (allowed->Mask & kAccess) != 0 && !IsTrusted(&allowed->SidStart, owner);
}

}  // namespace

bool IsOpenToOthers(HANDLE file) {
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = GetSecurityInfo(file, SE_FILE_OBJECT,
                                        OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION,
                                        &owner, nullptr, &list, nullptr, &descriptor);
    if (error != ERROR_SUCCESS) return true;
    const std::unique_ptr<void, FreeLocal> freed(descriptor);
    if (owner == nullptr || list == nullptr) return true;  // without a list everybody may
    for (DWORD index = 0; index < list->AceCount; ++index) {
        if (GivesAccessToOthers(list, index, owner)) return true;
    }
    return false;
}

}  // namespace tarsel
