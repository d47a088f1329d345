// What became of one Redfish request: a resource, or a failure that says what kind it was.
#pragma once

#include <boost/json.hpp>
#include <string>
#include <vector>

#include "transport/http/http_types.h"

namespace Vantix::transport {

enum class RedfishProblem {
    kNone,
    kNotReached,      ///< no answer at all; `transport` says why
    kUnauthorized,    ///< 401: user or password refused, or the session is gone
    kForbidden,       ///< 403 without a more precise reason
    kLicence,         ///< the service wants a licence for this resource
    kPasswordChange,  ///< the account's password must be changed first
    kSessionLimit,    ///< no free session
    kNotFound,        ///< 404, 410
    kStatus,          ///< any other status that is no success
    kBadBody,         ///< a success whose body is no JSON object
    kRedirect         ///< a redirect that must not be followed
};

struct RedfishFailure {
    RedfishProblem problem = RedfishProblem::kNone;
    HttpErrorKind transport = HttpErrorKind::kNone;
    int status = 0;
    std::string text;         ///< method, path, what was answered; one line, no secret
    bool never_sent = false;  ///< the request did not leave: even a login may be sent again
    [[nodiscard]] explicit operator bool() const { return problem != RedfishProblem::kNone; }
};

/// One answered or failed request. `body` holds the resource when there is no failure; `messages`
/// the MessageIds found beside the members of a successful answer or in an error document.
struct RedfishAnswer {
    RedfishFailure failure;
    boost::json::object body;
    std::vector<std::string> message_ids;
    std::string warning;  ///< for example: the body had to be cleaned before it could be read
    [[nodiscard]] bool Ok() const { return !failure; }
};

/// Reads an exchange's outcome. Never throws; consumes the body.
RedfishAnswer ReadAnswer(const char* method, const std::string& path, HttpOutcome&& outcome);

/// The failure of an exchange that was not answered.
RedfishFailure FailureOf(const char* method, const std::string& path, const HttpError& error);

}  // namespace Vantix::transport
