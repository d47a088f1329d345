#include "platform/local/kernel_name.h"

#include <windows.h>

namespace Vantix::local {

// Of the machine, not of this process: a 32-bit or emulated process would see another one.
std::string RunningArchitecture() {
    SYSTEM_INFO info{};
    GetNativeSystemInfo(&info);
    switch (info.wProcessorArchitecture) {
        case PROCESSOR_ARCHITECTURE_AMD64:
            return "x86_64";
        case PROCESSOR_ARCHITECTURE_ARM64:
            return "aarch64";
        case PROCESSOR_ARCHITECTURE_INTEL:
            return "i686";
        default:
            return {};
    }
}

}  // namespace Vantix::local
