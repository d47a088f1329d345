// Firmware components of a controller that can be updated by PICMG HPM.1, and their versions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "transport/ipmi/ipmitool_command.h"
#include "transport/ipmi/raw_answer.h"

namespace Vantix::transport {

[[nodiscard]] RawRequest HpmCapabilitiesRequest();
/// The description and the running revision of one component (0 to 7).
[[nodiscard]] RawRequest HpmDescriptionRequest(std::uint8_t component);
[[nodiscard]] RawRequest HpmRevisionRequest(std::uint8_t component);

/// The numbers of the components, rising; empty when the controller does not know HPM.1.
[[nodiscard]] std::vector<std::uint8_t> ParseHpmComponents(const RawAnswer& answer);

/// Up to twelve characters, clean; empty when there are none.
[[nodiscard]] std::string ParseHpmDescription(const RawAnswer& answer);

struct HpmRevision {
    std::string version;  ///< "2.17"
    Bytes auxiliary;      ///< four bytes whose meaning is the maker's; or none
};
/// Nothing when the component tells no revision (also all bytes 0xff: unknown).
[[nodiscard]] std::optional<HpmRevision> ParseHpmRevision(const RawAnswer& answer);

}  // namespace Vantix::transport
