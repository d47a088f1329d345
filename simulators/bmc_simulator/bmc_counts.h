// What a simulated BMC saw. A copy taken at one moment; tests assert on it. Requests, statuses and
// sessions are counted before the answer leaves; ends of connections and failed handshakes are seen
// by the client first and counted a little later.

#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simulators {

using HeaderList = std::vector<std::pair<std::string, std::string>>;

/// Value of the first header of that name (any letter case); nullptr where there is none.
[[nodiscard]] const std::string* FindHeader(const HeaderList& headers, std::string_view name);

struct RequestRecord {
    std::string method;
    std::string target;  ///< raw, as it stood in the request line
    HeaderList headers;  ///< as received; credentials included
    int connection = 0;  ///< ordinal of the connection, from 1
    int status = 0;      ///< of the answer; 0 while, or when, there is none
    std::string body;    ///< of a CIM request
};

struct BmcCounts {
    int connections = 0;          ///< accepted, those over the limit not counted
    int connections_refused = 0;  ///< over the limit
    int connections_open = 0;
    int most_connections = 0;  ///< open at the same time
    int handshakes = 0;        ///< completed
    int handshakes_failed = 0;
    int requests = 0;   ///< read whole
    int in_flight = 0;  ///< read whole and not answered
    int most_in_flight = 0;
    int sessions_made = 0;
    int sessions_ended = 0;    ///< by DELETE
    int sessions_expired = 0;  ///< by token lifetime
    int sessions_open = 0;
    int logins_refused = 0;  ///< wrong or locked-out credentials, by session or Basic
    int authorization_headers_seen = 0;
    int basic_requests = 0;  ///< let in by Basic credentials
    int token_requests = 0;  ///< let in by a session token
    std::vector<RequestRecord> log;

    /// Requests whose target is exactly `target`, query included.
    [[nodiscard]] int RequestsTo(std::string_view target) const;
    /// "GET /redfish/v1" and so on, in order of arrival.
    [[nodiscard]] std::vector<std::string> RequestLines() const;
};

}  // namespace simulators
