#include "file_access.h"

#include <windows.h>

#include <stdexcept>

#include "file_access_windows.h"
#include "platform/os/wide_text_windows.h"

namespace tarsel {
namespace {

constexpr DWORD kLongestSid = SECURITY_MAX_SID_SIZE;
using Bytes = std::vector<unsigned char>;

void Check(bool is_done, const char* what) {
    if (!is_done) throw std::runtime_error(std::string("no ") + what);
}

Bytes ThisUser() {
    HANDLE token = nullptr;
    Check(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) != 0, "token");
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    Bytes memory(size);
    Check(GetTokenInformation(token, TokenUser, memory.data(), size, &size) != 0, "user");
    CloseHandle(token);
    const PSID user = reinterpret_cast<const TOKEN_USER*>(memory.data())->User.Sid;
    Bytes sid(kLongestSid);
    Check(CopySid(kLongestSid, sid.data(), user) != 0, "copy of the user");
    return sid;
}

Bytes SidOf(WELL_KNOWN_SID_TYPE who) {
    if (who == WinNullSid) return ThisUser();
    Bytes sid(kLongestSid);
    DWORD size = kLongestSid;
    Check(CreateWellKnownSid(who, nullptr, sid.data(), &size) != 0, "well-known user");
    return sid;
}

}  // namespace

void SetAccess(const std::string& file, const std::vector<AccessEntry>& entries) {
    alignas(ACL) unsigned char memory[1024];
    auto* const list = reinterpret_cast<ACL*>(memory);
    Check(InitializeAcl(list, sizeof memory, ACL_REVISION) != 0, "list");
    for (const AccessEntry& entry : entries) {
        Bytes sid = SidOf(entry.who);
        const BOOL is_added =
            entry.is_allowed ? AddAccessAllowedAce(list, ACL_REVISION, entry.rights, sid.data())
                             : AddAccessDeniedAce(list, ACL_REVISION, entry.rights, sid.data());
        Check(is_added != 0, "entry");
    }
    SECURITY_DESCRIPTOR descriptor;
    Check(InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) != 0 &&
              SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE) != 0 &&
              SetSecurityDescriptorControl(&descriptor, SE_DACL_PROTECTED, SE_DACL_PROTECTED) != 0,
          "descriptor");
    // Unlike the newer call this one adds nothing of the folder's own list, under Wine neither.
    Check(
        SetFileSecurityW(Vantix::WideOf(file).c_str(), DACL_SECURITY_INFORMATION, &descriptor) != 0,
        "access list of the file");
}

void CloseToOthers(const std::string& file) {
    SetAccess(file, {{WinNullSid, FILE_ALL_ACCESS}});
}

}  // namespace tarsel
