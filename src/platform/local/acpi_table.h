// The tables of the machine's firmware for the operating system (ACPI).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Vantix::local {

/// The first table of the four letters `signature`, with its header, from the running system's own
/// call; nothing where there is no such table, and on systems that show such tables as files.
[[nodiscard]] std::optional<std::string> RunningAcpiTable(std::string_view signature);

}  // namespace Vantix::local
