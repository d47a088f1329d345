#include "transport/ipmi/hex_text.h"

#include <charconv>

namespace Vantix::transport {

std::string HexByte(std::uint8_t byte) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    return {kDigits[byte >> 4], kDigits[byte & 0x0f]};
}

std::string HexBytes(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) text += (text.empty() ? "" : " ") + HexByte(byte);
    return text;
}

std::optional<std::uint32_t> ParseHex(std::string_view text, std::uint32_t max) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
    if (error != std::errc() || end != text.data() + text.size() || number > max) return {};
    return number;
}

}  // namespace Vantix::transport
