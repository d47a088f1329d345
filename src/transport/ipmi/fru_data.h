// The content of a FRU device (Platform Management FRU Information Storage Definition v1.0): what a
// board, chassis or product says of itself.
//
// Pure, over raw bytes, also of a part of the device: areas are read one by one, and a damaged or
// missing one costs only itself.
#pragma once

#include <cstdint>
#include <string>

#include "transport/ipmi/hex_text.h"

namespace Vantix::transport {

/// All texts are clean and keep their letters and inner blanks; unknown ones are empty.
struct FruData {
    std::string chassis_part_number;
    std::string chassis_serial_number;
    std::string board_manufacturer;
    std::string board_name;
    std::string board_serial_number;
    std::string board_part_number;
    std::string product_manufacturer;
    std::string product_name;
    std::string product_part_number;  ///< "Product Part/Model Number"
    std::string product_version;
    std::string product_serial_number;
    bool is_power_supply = false;   ///< has a Power Supply Information record
    bool has_bad_checksum = false;  ///< of an area; common, its texts are taken all the same

    /// True when not a single text is known.
    [[nodiscard]] bool IsEmpty() const;
};

/// Bytes without a valid common header give an empty reading.
[[nodiscard]] FruData ReadFruData(const Bytes& image);

/// How many bytes from the start are needed to read all areas, as far as the given ones tell; at
/// least 8. More bytes may tell of more.
[[nodiscard]] std::size_t FruBytesNeeded(const Bytes& image);

}  // namespace Vantix::transport
