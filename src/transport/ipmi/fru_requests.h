// The requests that read a FRU device, and the bytes that come of their answers.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "transport/ipmi/ipmitool_command.h"
#include "transport/ipmi/raw_answer.h"

namespace Vantix::transport {

struct FruSize {
    std::size_t bytes = 0;
    bool is_in_words = false;  ///< offsets and counts of Read FRU Data are in words of two bytes
};

/// Get FRU Inventory Area Info (IPMI v2.0, 34.1).
[[nodiscard]] RawRequest FruSizeRequest(std::uint8_t fru_id);
/// Nothing when there is no such device.
[[nodiscard]] std::optional<FruSize> ParseFruSize(const RawAnswer& answer);

/// Read FRU Data (34.2) from byte `from` up to `to`, 16 bytes at a time: what every controller can
/// send. `from` must be even where the device counts in words.
[[nodiscard]] std::vector<RawRequest> FruReadRequests(std::uint8_t fru_id, std::size_t from,
                                                      std::size_t to, bool is_in_words);

/// Appends the bytes of the answers to `image` up to the first answer that is missing or short.
/// False when one was, so that nothing behind it can be read.
bool AppendFruBytes(const std::vector<RawAnswer>& answers, bool is_in_words, Bytes& image);

}  // namespace Vantix::transport
