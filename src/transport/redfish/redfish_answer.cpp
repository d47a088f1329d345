#include "transport/redfish/redfish_answer.h"

#include <utility>

#include "transport/redfish/extended_info.h"
#include "transport/redfish/json_document.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {

namespace {

constexpr std::size_t kQuotedCharacters = 80;

std::string Asked(const char* method, const std::string& path) {
    return std::string(method) + " " + path;
}

std::string Quoted(const std::string& body) {
    return CleanStart(body, kQuotedCharacters);
}

RedfishProblem ProblemOfStatus(int status) {
    switch (status) {
        case 401:
            return RedfishProblem::kUnauthorized;
        case 403:
            return RedfishProblem::kForbidden;
        case 404:
        case 410:
            return RedfishProblem::kNotFound;
        default:
            return RedfishProblem::kStatus;
    }
}

// A message may tell more than the status, but only a 401 or the log-in itself speaks of a wrong
// password: 403 with "unauthorized" in it is a matter of privilege.
RedfishProblem MorePrecise(int status, RedfishProblem told) {
    const RedfishProblem by_status = ProblemOfStatus(status);
    if (told == RedfishProblem::kNone) return by_status;
    if (told == RedfishProblem::kUnauthorized && status == 403) return by_status;
    return told;
}

std::string Words(const std::vector<ServiceMessage>& messages, const std::string& otherwise) {
    for (const auto& message : messages) {
        if (!message.text.empty()) return message.text;
        if (!message.id.empty()) return message.id;
    }
    return otherwise;
}

RedfishFailure StatusFailure(const char* method, const std::string& path,
                             const HttpResponse& response,
                             const std::vector<ServiceMessage>& messages) {
    RedfishFailure failure;
    failure.status = response.status;
    failure.problem = MorePrecise(response.status, ProblemOf(messages));
    failure.text = Asked(method, path) + " answered " + std::to_string(response.status);
    const std::string words = Words(messages, messages.empty() ? Quoted(response.body) : "");
    if (!words.empty()) failure.text += " (" + words + ")";
    return failure;
}

RedfishFailure BodyFailure(const char* method, const std::string& path,
                           const HttpResponse& response, const std::string& why) {
    RedfishFailure failure;
    failure.problem = RedfishProblem::kBadBody;
    failure.status = response.status;
    const std::string type = CleanText(response.Header("content-type"));
    failure.text = Asked(method, path) + " answered " + std::to_string(response.status) +
                   " with no JSON resource (" + (type.empty() ? "no content type" : type) + "; " +
                   why + ")";
    return failure;
}

RedfishFailure RedirectFailure(const char* method, const std::string& path,
                               const HttpResponse& response) {
    RedfishFailure failure;
    failure.problem = RedfishProblem::kRedirect;
    failure.status = response.status;
    failure.text = Asked(method, path) + " was redirected to " +
                   CleanText(response.Header("location")) +
                   ", which is another host or one redirect too many; not followed";
    return failure;
}

bool IsSuccess(int status) {
    return status >= 200 && status < 300;
}
bool IsRedirect(int status) {
    return status >= 300 && status < 400;
}

// An error document that came with a success status is an error all the same.
RedfishFailure FailureInside(const char* method, const std::string& path,
                             const HttpResponse& response,
                             const std::vector<ServiceMessage>& messages) {
    RedfishFailure failure = StatusFailure(method, path, response, messages);
    if (ProblemOf(messages) == RedfishProblem::kNone) failure.problem = RedfishProblem::kBadBody;
    return failure;
}

}  // namespace

RedfishFailure FailureOf(const char* method, const std::string& path, const HttpError& error) {
    RedfishFailure failure;
    failure.problem = RedfishProblem::kNotReached;
    failure.transport = error.kind;
    failure.never_sent = error.never_sent;
    failure.text = Asked(method, path) + ": " + error.text;
    return failure;
}

RedfishAnswer ReadAnswer(const char* method, const std::string& path, HttpOutcome&& outcome) {
    RedfishAnswer answer;
    if (!outcome.Answered()) {
        answer.failure = FailureOf(method, path, outcome.error);
        return answer;
    }
    HttpResponse& response = outcome.response;
    if (IsRedirect(response.status)) {
        answer.failure = RedirectFailure(method, path, response);
        return answer;
    }
    if (response.status == 204) return answer;
    json::JsonDocument document = json::ParseJson(response.body);
    boost::json::object* body = document.IsValid() ? document.value.if_object() : nullptr;
    std::vector<ServiceMessage> messages;
    if (body != nullptr) messages = ReadMessages(*body);
    for (const auto& message : messages) answer.message_ids.push_back(message.id);
    if (!IsSuccess(response.status)) {
        answer.failure = StatusFailure(method, path, response, messages);
    } else if (body == nullptr) {
        const std::string why = document.IsValid() ? "not an object" : document.error;
        answer.failure = BodyFailure(method, path, response, why);
    } else if (IsErrorDocument(*body)) {
        answer.failure = FailureInside(method, path, response, messages);
    } else {
        answer.body = std::move(*body);
        if (document.was_cleaned) {
            answer.warning = Asked(method, path) + ": illegal characters were cleaned away";
        }
    }
    std::string().swap(response.body);
    return answer;
}

}  // namespace Vantix::transport
