#include "platform/local/acpi_table.h"

namespace Vantix::local {

std::optional<std::string> RunningAcpiTable(std::string_view /*signature*/) {
    return std::nullopt;
}

}  // namespace Vantix::local
