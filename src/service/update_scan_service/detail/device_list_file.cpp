#include "service/update_scan_service/detail/device_list_file.h"

#include <fstream>

namespace service::detail {

void WriteDeviceListFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
}

}  // namespace service::detail
