// Values that travel between a protocol client and the HTTP layer: requests, answers, failures.
//
// Three things stay apart: the peer could not be talked to (HttpError), it refused (a status), it
// answered with nothing useful (the protocol client's matter).
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Vantix::transport {

using Milliseconds = std::chrono::milliseconds;

enum class HttpMethod { kGet, kPost, kDelete };

struct HttpRequest {
    HttpMethod method = HttpMethod::kGet;
    /// Path and query, already percent-encoded where needed; sent as it stands.
    std::string target = "/";
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
    /// User and password for HTTP Basic; absent: no Authorization header at all.
    std::optional<std::pair<std::string, std::string>> basic;
    /// Limit for the whole exchange, 0: none. A body that keeps arriving is not cut (the limit is
    /// then one of silence) unless the target's own deadline ends.
    Milliseconds timeout{60000};
    /// How often a GET may be sent when passing failures call for waiting and asking again (at
    /// least 1). The immediate repetitions after a reset, or after a 403 amid other requests, are
    /// not counted. Lower it for optional resources: four tries take 21 seconds.
    int max_tries = 4;
};

struct HttpResponse {
    int status = 0;
    /// Header names in lower case; of repeated headers the last value.
    std::map<std::string, std::string> headers;
    std::string body;
    bool is_reused_connection = false;
    Milliseconds connect_time{0};   ///< TCP and TLS together; 0 on a reused connection
    Milliseconds response_time{0};  ///< request sent to last byte

    /// The header's value, empty when absent. `name` in lower case.
    [[nodiscard]] std::string Header(const std::string& name) const {
        const auto found = headers.find(name);
        return found == headers.end() ? std::string() : found->second;
    }
};

enum class HttpErrorKind {
    kNone,
    kBadAddress,  ///< the address or URL is malformed
    kResolve,     ///< the name is not known
    kConnect,     ///< refused or no route
    kConnectTimeout,
    kTlsHandshake,  ///< no common protocol version or cipher, weak key, ...
    kUntrusted,     ///< certificate or fingerprint not accepted: nothing was sent
    kTimeout,       ///< connected, but the answer did not come in time
    kReset,         ///< connection closed or reset while in use
    kTruncated,     ///< fewer bytes than announced
    kTooLarge,      ///< body beyond the limit
    kProtocol,      ///< not HTTP
    kDeadline,      ///< the target's whole time is used up
    kCancelled,     ///< the user asked to stop
    kOther
};

struct HttpError {
    HttpErrorKind kind = HttpErrorKind::kNone;
    std::string text;  ///< the library's words; never a secret
    /// The connection broke before the request could leave: even a POST may be sent again.
    bool never_sent = false;
};

/// What became of one request: an answer, or an error.
struct HttpOutcome {
    HttpError error;
    HttpResponse response;
    [[nodiscard]] bool Answered() const { return error.kind == HttpErrorKind::kNone; }
};

}  // namespace Vantix::transport
