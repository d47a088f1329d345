#include "file_access.h"

#include <sys/stat.h>

#include <stdexcept>

namespace tarsel {

void CloseToOthers(const std::string& file) {
    if (chmod(file.c_str(), 0600) != 0) throw std::runtime_error("no mode for " + file);
}

}  // namespace tarsel
