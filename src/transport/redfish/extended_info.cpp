#include "transport/redfish/extended_info.h"

#include <array>
#include <string_view>
#include <utility>

#include "transport/redfish/json_fields.h"

namespace Vantix::transport {

using namespace json;

namespace {

constexpr const char* kExtendedInfo = "@Message.ExtendedInfo";

void AddMessage(const boost::json::value& entry, std::vector<ServiceMessage>& messages) {
    if (const auto* object = entry.if_object()) {
        messages.push_back({Text(*object, "MessageId"), Text(*object, "Message")});
    } else if (entry.is_string()) {
        messages.push_back({std::string(), TextOf(entry)});
    }
}

// A list by the standard; some services send the only message without the list.
void AddMessages(const boost::json::value* info, std::vector<ServiceMessage>& messages) {
    if (info == nullptr) return;
    const auto* list = info->if_array();
    if (list == nullptr) {
        AddMessage(*info, messages);
        return;
    }
    for (const auto& entry : *list) AddMessage(entry, messages);
}

bool Contains(const ServiceMessage& message, std::string_view word) {
    return message.id.find(word) != std::string::npos ||
           message.text.find(word) != std::string::npos;
}

bool EndsWith(const std::string& text, std::string_view end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

RedfishProblem ProblemOf(const ServiceMessage& message) {
    static constexpr std::array<std::string_view, 3> kLicenceWords{"icense", "LICENSE", "icence"};
    if (EndsWith(message.id, "PasswordChangeRequired")) return RedfishProblem::kPasswordChange;
    if (EndsWith(message.id, "SessionLimitExceeded")) return RedfishProblem::kSessionLimit;
    for (const auto word : kLicenceWords) {
        if (Contains(message, word)) return RedfishProblem::kLicence;
    }
    if (EndsWith(message.id, "ResourceAtUriUnauthorized") ||
        EndsWith(message.id, "InvalidCredentials") ||
        EndsWith(message.id, "UnauthorizedLoginAttempt")) {
        return RedfishProblem::kUnauthorized;
    }
    return RedfishProblem::kNone;
}

}  // namespace

std::vector<ServiceMessage> ReadMessages(const boost::json::object& body) {
    std::vector<ServiceMessage> messages;
    AddMessages(body.if_contains(kExtendedInfo), messages);
    const auto* error = body.if_contains("error");
    if (error == nullptr) return messages;
    if (const auto* object = error->if_object()) {
        AddMessages(object->if_contains(kExtendedInfo), messages);
        if (messages.empty()) {
            messages.push_back({Text(*object, "code"), Text(*object, "message")});
        }
    } else {
        AddMessage(*error, messages);
    }
    return messages;
}

RedfishProblem ProblemOf(const std::vector<ServiceMessage>& messages) {
    for (const auto& message : messages) {
        const RedfishProblem problem = ProblemOf(message);
        if (problem != RedfishProblem::kNone) return problem;
    }
    return RedfishProblem::kNone;
}

bool IsErrorDocument(const boost::json::object& body) {
    return body.contains("error") && !body.contains("@odata.type") && !body.contains("Members");
}

}  // namespace Vantix::transport
