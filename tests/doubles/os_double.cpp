#include "platform/os/os.h"

#include "doubles/platform_double.h"
#include "platform/config/config.h"

using doubles::PlatformDouble;

namespace Vantix {

int GetGlobalConfigValue(const std::string& key, int default_value) {
    return PlatformDouble::Current().GetGlobalConfigValue(key, default_value);
}

std::string GetModuleDirectory() {
    return PlatformDouble::Current().GetModuleDirectory();
}

std::string DirectoryOfModuleFile(const std::string& module_file) {
    return PlatformDouble::Current().DirectoryOfModuleFile(module_file);
}

void SleepMilliseconds(std::uint32_t milliseconds) {
    PlatformDouble::Current().SleepMilliseconds(milliseconds);
}

std::int64_t MonotonicSeconds() {
    return PlatformDouble::Current().MonotonicSeconds();
}

bool ReplaceFile(const std::string& path, const std::string& text) {
    return PlatformDouble::Current().ReplaceFile(path, text);
}

}  // namespace Vantix
