// Messages that a Redfish service puts beside or instead of a resource (DSP0266, "Extended
// information"), in all the shapes that services use.
#pragma once

#include <boost/json.hpp>
#include <string>
#include <vector>

#include "transport/redfish/redfish_answer.h"

namespace Vantix::transport {

struct ServiceMessage {
    std::string id;    ///< MessageId, for example "Base.1.8.InsufficientPrivilege"
    std::string text;  ///< Message, else the error's own message
};

/// All messages in `body`: `error` with `@Message.ExtendedInfo` as list or single object, a plain
/// `error` text, or `@Message.ExtendedInfo` at the top. Empty when there is none.
std::vector<ServiceMessage> ReadMessages(const boost::json::object& body);

/// The most precise problem that the messages name; kNone when they name none of interest.
RedfishProblem ProblemOf(const std::vector<ServiceMessage>& messages);

/// True for an error document: an `error` member and no `@odata.type`.
bool IsErrorDocument(const boost::json::object& body);

}  // namespace Vantix::transport
