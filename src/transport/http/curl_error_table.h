// The one place where libcurl's result codes become our kinds of failure.
#pragma once

#include <curl/curl.h>

#include <string>
#include <string_view>

#include "transport/http/http_types.h"

namespace Vantix::transport {

/// What an exchange had reached when it failed; the codes alone do not tell.
struct FailureFacts {
    bool is_connected = false;      ///< the connection stood (TLS included), sending had begun
    bool is_too_large = false;      ///< we stopped it at the body limit
    bool is_lost_on_reuse = false;  ///< a kept connection turned out dead when it was used again
};

/// The kind of failure of `code`; kNone for CURLE_OK. `text` are libcurl's words: they tell a
/// handshake that broke off from one that was refused.
[[nodiscard]] HttpErrorKind KindOfCurlCode(CURLcode code, const FailureFacts& facts,
                                           std::string_view text);

/// True when the words of a TLS failure speak of old protocol versions, short keys or old
/// renegotiation, so that the option for old controllers may help.
[[nodiscard]] bool MayLegacyTlsHelp(std::string_view text);

}  // namespace Vantix::transport
