// The answers of one ipmitool run: its output cut at the marks, raw bytes, completion codes.
//
// Pure. Any bytes may come in; what is no answer becomes "not answered".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "transport/ipmi/hex_text.h"
#include "transport/ipmi/ipmitool_command.h"

namespace Vantix::transport {

/// Completion codes (IPMI v2.0, table 5-2) that matter here.
inline constexpr int kCompletionOk = 0x00;
inline constexpr int kCompletionBusy = 0xc0;
inline constexpr int kCompletionNoPrivilege = 0xd4;

/// The texts between the marks, `count` of them: absent where the run ended before. Nothing at all
/// when the first mark is missing: there was no session.
[[nodiscard]] std::vector<std::optional<std::string>> SplitAnswers(std::string_view output,
                                                                   std::size_t count);

/// The bytes of a raw answer; nothing when the text is empty or anything but pairs of hexadecimal
/// digits.
[[nodiscard]] std::optional<Bytes> ParseRawBytes(std::string_view text);

struct RawAnswer {
    int completion = -1;  ///< -1: no answer came
    Bytes data;           ///< without the completion code
    [[nodiscard]] bool IsOk() const { return completion == kCompletionOk; }
};

/// Completion codes of refused requests, in the order of their lines in the error output.
struct RawRefusal {
    std::uint8_t network_function = 0;
    std::uint8_t command = 0;
    int completion = -1;
};
[[nodiscard]] std::vector<RawRefusal> ParseRefusals(std::string_view error_output);

/// One answer a request. A request without bytes gets the next refusal that names it.
[[nodiscard]] std::vector<RawAnswer> ReadRawAnswers(
    const std::vector<RawRequest>& requests, const std::vector<std::optional<std::string>>& texts,
    std::string_view error_output);

}  // namespace Vantix::transport
