// Text of URLs: hosts as they stand in one, and request targets made fit to be sent.
//
// Changes only what may not be sent as it is. Does not resolve, normalise or re-encode.
#pragma once

#include <string>
#include <string_view>

namespace Vantix::transport {

/// `host` as it stands in a URL: IPv6 addresses in brackets, with their zone id's percent sign
/// written %25 (RFC 6874). Other hosts unchanged.
[[nodiscard]] std::string UrlHost(std::string_view host);

/// True for text that can stand for a host: not empty, no blanks, control characters, brackets or
/// characters that end the host part of a URL.
[[nodiscard]] bool IsHostText(std::string_view host);

/// `target` with the bytes percent-encoded that RFC 3986 forbids (blanks, quotes, control and
/// non-ASCII bytes, a percent sign without two hexadecimal digits). Everything else stays, above
/// all "%xx", "$", "(", ")", "=", "&" and ",": services refuse encoded query options. A missing
/// leading slash is added.
[[nodiscard]] std::string EncodeTarget(std::string_view target);

}  // namespace Vantix::transport
