// Which FRU devices a controller has: the locator records of its sensor data repository.
//
// Read from what "sdr elist fru" prints with -v, because the records form a chain that one run of
// ipmitool with fixed commands cannot follow.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::transport {

inline constexpr const char* kFruLocatorLine = "sdr elist fru";
/// Entity IDs (IPMI v2.0, table 43-13).
inline constexpr std::uint32_t kEntityPowerSupply = 10;

struct FruLocator {
    std::string name;  ///< "PSU1"
    std::uint8_t fru_id = 0;
    std::uint32_t entity_id = 0;
    std::uint32_t entity_instance = 0;
};

/// Logical FRU devices of the controller itself, in the order of the records; records that are
/// incomplete, of other controllers or of chips on a bus are left out.
[[nodiscard]] std::vector<FruLocator> ParseFruLocators(std::string_view text);

}  // namespace Vantix::transport
