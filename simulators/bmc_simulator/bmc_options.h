// What a simulated BMC is told to be: its scenario, who may log in, its pace, its TLS and the
// faults it shows. Plain values only; nothing here opens a socket or reads a file.

#pragma once

#include <chrono>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace simulators {

/// One way of answering badly. Fields that a kind does not name are ignored by it.
struct Fault {
    enum class Kind {
        kReset,            ///< connection reset (TCP RST) instead of an answer
        kEmptyReply,       ///< connection closed cleanly instead of an answer
        kSilent,           ///< never answers; holds the connection until the client gives up
        kTruncate,         ///< whole header, first half of the body, then close
        kSlowDrip,         ///< the right answer, `drip_bytes` every `drip_interval`
        kDelay,            ///< the right answer, `delay` later
        kCloseAfterReply,  ///< the right answer promising keep-alive, then the connection dies
        kStatus,           ///< `status` with a Redfish error body naming `message_id`
        kBody,             ///< `status`, `content_type` and `body` word for word
        kEmptyBody,        ///< `status` and no body at all
        kBadJson,          ///< the right answer cut in the middle of the text (length is right)
        kWrongTypes,       ///< the right answer, its texts turned into objects, numbers into text
        kControlBytes,     ///< the right answer with raw CR and a stray 0xFF inside a text
        kTwoDocuments,     ///< an error document and the right answer in one body
        kHtml,             ///< `status` with an HTML page
        kHugeBody,         ///< valid JSON of at least `size` bytes
        kDeepJson,         ///< valid JSON nested `size` levels deep
        kGzip,             ///< the right answer with Content-Encoding gzip, asked for or not
        kRedirect,         ///< `status` (301, 302, 303, 307, 308) to `location`
        kChunked,          ///< the right answer in chunks of `drip_bytes`, with a trailer
        kOddHeaders        ///< the right answer, header names small, length with leading zeros
    };

    Kind kind = Kind::kStatus;
    int status = 200;  ///< set it for kStatus and kRedirect
    std::string message_id = "Base.1.12.GeneralError";
    /// Further headers, for kStatus and kBody.
    std::vector<std::pair<std::string, std::string>> headers;
    std::string retry_after;  ///< Retry-After header as it stands (seconds or date); empty: none
    std::string location;
    std::string content_type = "application/json";
    std::string body;
    std::size_t size = 0;
    std::size_t drip_bytes = 1;
    std::chrono::milliseconds drip_interval{20};
    std::chrono::milliseconds delay{0};
};

/// Which requests show a fault. Empty conditions match everything; all given ones must hold.
struct FaultRule {
    std::string method;  ///< "GET", "POST", ...
    std::string target;  ///< whole raw request target, query included
    std::string target_prefix;
    std::string target_contains;  ///< for example "$expand"
    std::string body_contains;    ///< for example the class name in a CIM request
    int nth_request = 0;          ///< ordinal since the start or ResetCounts, from 1; 0: any
    int skip = 0;                 ///< spare the first so many requests that match
    int times = -1;               ///< how often; -1: every time
    Fault fault;
};

enum class ExpandMode {
    kAsRecorded,   ///< as the root of the scenario advertises
    kSupported,    ///< advertised and right
    kUnsupported,  ///< not advertised, answered with 501
    kRefused,      ///< advertised, answered with `expand_refusal_status`
    kIgnored,      ///< advertised, the members stay links
    kDropsFields,  ///< advertised, members lack `expand_dropped_fields`
    kTwoDocuments  ///< advertised, an error document precedes the good one
};

enum class LocationStyle { kRelative, kAbsolute, kPlainHttp, kMissing };

enum class PasswordChange {
    kNotNeeded,
    kSaidAtLogin,    ///< the session is made, its body carries the message
    kForbidsTheRest  ///< the session is made without a word, everything else is 403 with the
                     ///< message
};

enum class TlsVersion { kDefault, kTls10, kTls11, kTls12, kTls13 };

enum class KeyKind {
    kEcP256,
    kRsa1024  ///< refused by clients at their usual security level
};

struct BmcOptions {
    // Scenario.
    std::string scenario_dir;  ///< holds redfish/v1/**/index.json, cim/*.xml or both; may be empty
    /// Bodies laid over the scenario, by path ("/redfish/v1/Systems"); an empty text removes it.
    std::map<std::string, std::string> replaced_bodies;

    // Login.
    std::string user = "demo";
    std::string password = "demo-pass-1";
    bool allow_session = true;  ///< false: POST to the sessions is 405
    bool allow_basic = true;    ///< false: Basic credentials, right or wrong, are 401
    int session_refusal_status =
        0;  ///< not 0: logins are refused so, the password is not looked at
    std::string session_refusal_message_id = "Base.1.12.ServiceDisabled";
    int session_slots = 0;               ///< 503 SessionLimitExceeded beyond; 0: no limit
    bool refuse_basic_on_login = false;  ///< 400 for a session POST with an Authorization header
    int lock_out_after = 0;  ///< so many wrong logins, then even the right one is 401; 0: never
    int token_lifetime_requests = 0;  ///< a token is good for so many requests; 0: for ever
    int tokens_that_expire = -1;      ///< the lifetime holds for the first so many tokens; -1: all
    bool root_needs_login = false;    ///< even /redfish/v1 is 401 without credentials
    PasswordChange password_change = PasswordChange::kNotNeeded;
    LocationStyle session_location = LocationStyle::kRelative;
    bool session_body_has_odata_id = true;

    // Collections.
    ExpandMode expand = ExpandMode::kAsRecorded;
    int expand_refusal_status = 400;
    std::vector<std::string> expand_dropped_fields = {"Version", "SoftwareId"};
    int page_size = 0;                   ///< members a page; 0: no paging
    bool refuse_encoded_dollar = false;  ///< 400 for %24 in a query

    // Pace.
    std::chrono::milliseconds latency{0};          ///< before each response
    std::chrono::milliseconds handshake_delay{0};  ///< TLS handshakes queue up behind one another
    bool serialize = false;   ///< one request at a time over all connections, in order of arrival
    int max_connections = 0;  ///< further connections are reset at once; 0: no limit

    // Transport. Read at start only.
    int port = 0;              ///< 0: any free one
    bool listen_ipv6 = false;  ///< also on ::1, same port
    bool plain_http = false;
    TlsVersion tls_min = TlsVersion::kDefault;
    TlsVersion tls_max = TlsVersion::kDefault;
    KeyKind key_kind = KeyKind::kEcP256;
    /// Subject alternative names of the certificate made at start.
    std::vector<std::string> certificate_names = {"IP:127.0.0.1", "IP:::1", "DNS:localhost"};
    bool certificate_expired = false;
    std::string certificate_pem;  ///< serve this one instead; with `private_key_pem`
    std::string private_key_pem;

    std::vector<FaultRule> faults;
};

}  // namespace simulators
