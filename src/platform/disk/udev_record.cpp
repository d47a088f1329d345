#include "platform/disk/udev_record.h"

#include <cstddef>

#include "transport/text/text_cleaning.h"

namespace Vantix::disk {

std::string UdevValue(std::string_view record, std::string_view key) {
    const std::string start = "E:" + std::string(key) + "=";
    while (!record.empty()) {
        const std::size_t end = record.find('\n');
        const std::string_view line = record.substr(0, end);
        if (line.substr(0, start.size()) == start) {
            return transport::CleanText(line.substr(start.size()));
        }
        record.remove_prefix(end == std::string_view::npos ? record.size() : end + 1);
    }
    return {};
}

}  // namespace Vantix::disk
