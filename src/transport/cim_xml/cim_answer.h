// The answer to one CIM-XML operation, and the reader that makes it of a body (DSP0201).
//
// Tolerant: unknown elements and attributes are passed over, an instance that cannot be used costs
// only itself, and of a body that breaks off what was complete is kept. Pure: text in, values out.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "transport/cim_xml/cim_types.h"
#include "transport/http/http_types.h"

namespace Vantix::transport {

enum class CimProblem {
    kNone,
    kNotReached,    ///< nothing was answered; `transport` says why
    kUnauthorized,  ///< 401
    kLoginBarred,   ///< the login was not sent: budget spent, or the channel is not protected
    kForbidden,     ///< 403, or CIM status 2
    kNoService,     ///< something answers, but not a CIM service
    kHttpStatus,    ///< any other HTTP status
    kBadBody,       ///< CIM-XML that cannot be read to its end
    kCimError       ///< the service answered with a CIM status; `cim_status` says which
};

/// CIM status codes that callers tell apart (DSP0200).
inline constexpr int kCimFailed = 1;
inline constexpr int kCimAccessDenied = 2;
inline constexpr int kCimInvalidNamespace = 3;
inline constexpr int kCimInvalidClass = 5;
inline constexpr int kCimNotSupported = 7;

struct CimFailure {
    CimProblem problem = CimProblem::kNone;
    HttpErrorKind transport = HttpErrorKind::kNone;
    int http_status = 0;
    int cim_status = 0;
    std::string text;  ///< clean, never a secret

    explicit operator bool() const { return problem != CimProblem::kNone; }
    /// The namespace or class is not known here; another namespace may have it.
    [[nodiscard]] bool IsElsewhere() const {
        return cim_status == kCimInvalidNamespace || cim_status == kCimInvalidClass;
    }
};

/// With a failure of kind kBadBody the lists hold what could be read before it.
struct CimAnswer {
    CimFailure failure;
    std::vector<CimInstance> instances;
    std::vector<CimInstanceName> names;
    std::vector<std::string> skipped;  ///< why an instance was left out, one text each
};

/// The word for a CIM status, for example "CIM_ERR_INVALID_CLASS"; empty for an unknown number.
[[nodiscard]] std::string CimStatusText(int status);

/// Reads the body of an answer to the request with that message id.
[[nodiscard]] CimAnswer ReadCimAnswer(std::string_view body, int message_id);

}  // namespace Vantix::transport
