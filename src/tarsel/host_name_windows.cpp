#include "tarsel/host_name.h"

#include <windows.h>

#include "platform/os/wide_text_windows.h"

namespace tarsel {

std::string HostName() {
    DWORD size = 0;
    GetComputerNameExW(ComputerNameDnsHostname, nullptr, &size);
    std::wstring name(size, L'\0');
    if (size == 0 || GetComputerNameExW(ComputerNameDnsHostname, name.data(), &size) == 0)
        return {};
    name.resize(size);
    return Vantix::Utf8Of(name);
}

}  // namespace tarsel
