// Makes text from outside safe to show, store and compare.
//
// Bytes in, well-formed UTF-8 out. Knows no format; parsing is done elsewhere.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Vantix::transport {

/// U+FFFD in UTF-8: stands for bytes that are no text.
inline constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// Length of the well-formed UTF-8 sequence (RFC 3629) at `at`, which lies inside `text`; 0 when
/// there is none.
[[nodiscard]] std::size_t Utf8SequenceLength(std::string_view text, std::size_t at);

/// `text` cut at the first NUL, control bytes turned into blanks, each byte that belongs to no
/// well-formed UTF-8 sequence turned into U+FFFD, and trimmed at both ends.
[[nodiscard]] std::string CleanText(std::string_view text);

/// The first `characters` characters of the clean text: what an error message shows of a body.
[[nodiscard]] std::string CleanStart(std::string_view text, std::size_t characters = 80);

}  // namespace Vantix::transport
