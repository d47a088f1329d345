#include "service/update_scan_service/detail/device_list_file.h"

#include "platform/os/os.h"

namespace service::detail {

void WriteDeviceListFile(const std::string& path, const std::string& text) {
    // The folder is open to everybody: a link that somebody left there must not be followed.
    static_cast<void>(Vantix::ReplaceFile(path, text));
}

}  // namespace service::detail
