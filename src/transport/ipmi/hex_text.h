// Bytes and the hexadecimal texts of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::transport {

using Bytes = std::vector<std::uint8_t>;

/// Two digits in lower case.
[[nodiscard]] std::string HexByte(std::uint8_t byte);

/// The bytes with a blank between two.
[[nodiscard]] std::string HexBytes(const Bytes& bytes);

/// The number that `text` is in hexadecimal digits, at most `max`; nothing for any other text.
[[nodiscard]] std::optional<std::uint32_t> ParseHex(std::string_view text, std::uint32_t max);

}  // namespace Vantix::transport
