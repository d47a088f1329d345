#include "platform/config/config.h"

#include <fstream>

#include "common/files/file_path.h"
#include "platform/config/config_text.h"
#include "platform/os/os.h"

namespace Vantix {

int GetGlobalConfigValue(const std::string& key, int default_value) {
    const std::string directory = GetModuleDirectory();
    if (directory.empty()) return default_value;
    std::ifstream file(FilePath(directory + "global.config"), std::ios::binary);
    return FindConfigNumber(file, key).value_or(default_value);
}

}  // namespace Vantix
