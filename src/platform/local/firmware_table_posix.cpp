#include "platform/local/firmware_table.h"

namespace Vantix::local {

std::optional<std::string> RunningFirmwareTable() {
    return std::nullopt;
}

}  // namespace Vantix::local
