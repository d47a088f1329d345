// The one parser of target addresses, for all protocols and for the command line.
//
// Reads text only: resolves nothing, asks nobody. Passwords never travel in an address; one that
// holds a password is refused, and no error text repeats what was given.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "common/export.h"

namespace Vantix::VantixConnection {

struct TargetAddress {
    std::string user;  ///< empty: not given
    std::string host;  ///< name, IPv4 or IPv6 address; no brackets, "%zone" kept
    int port = 0;      ///< 0: not given
};

/// Either an address, or one sentence about what is wrong with the text.
struct TargetAddressResult {
    std::optional<TargetAddress> address;
    std::string error;
};

/// Reads "[USER@]HOST[:PORT]" or "https://[USER@]HOST[:PORT][/]". An IPv6 address stands in
/// brackets when a port follows it, otherwise it may stand alone; a zone id follows "%" ("%25" in
/// the URL form, RFC 6874).
[[nodiscard]] TARSEL_EXPORT TargetAddressResult ParseTargetAddress(std::string_view text);

/// `host` as it stands in a URL: IPv6 addresses in brackets, their zone id after "%25".
[[nodiscard]] TARSEL_EXPORT std::string HostForUrl(std::string_view host);

}  // namespace Vantix::VantixConnection
