#include "transport/redfish/redfish_session.h"

#include <boost/json.hpp>
#include <utility>

#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::transport {

using namespace json;

namespace {

std::string LoginBody(const Credentials& credentials) {
    boost::json::object body;
    body["UserName"] = credentials.user;
    body["Password"] = credentials.password;
    return boost::json::serialize(body);
}

bool EndsWithPasswordChange(const std::vector<std::string>& message_ids) {
    static const std::string kEnd = "PasswordChangeRequired";
    for (const auto& id : message_ids) {
        if (id.size() >= kEnd.size() &&
            id.compare(id.size() - kEnd.size(), kEnd.size(), kEnd) == 0) {
            return true;
        }
    }
    return false;
}

// Deleted now, or not there any more: a session that ran out answers 401 or 404.
bool IsGone(const HttpOutcome& outcome) {
    const int status = outcome.response.status;
    return outcome.Answered() &&
           ((status >= 200 && status < 300) || status == 401 || status == 404);
}

}  // namespace

RedfishSession::RedfishSession(HttpTransport& transport, Credentials credentials,
                               Milliseconds timeout)
    : transport_(transport), credentials_(std::move(credentials)), timeout_(timeout) {}

void RedfishSession::LogIn(const std::string& sessions_path, Done done) {
    HttpRequest request;
    request.method = HttpMethod::kPost;
    request.target = sessions_path;
    request.timeout = timeout_;
    request.headers = {{"Content-Type", "application/json"},
                       {"Accept", "application/json"},
                       {"OData-Version", "4.0"}};
    request.body = LoginBody(credentials_);
    login_pending_ = true;
    transport_.Submit(
        std::move(request), [this, sessions_path, done = std::move(done)](HttpOutcome&& outcome) {
            login_pending_ = false;
            HttpResponse head;
            head.status = outcome.response.status;
            head.headers = outcome.response.headers;
            // The headers tell the session even where the rest of the answer was lost.
            const bool made = head.status >= 200 && head.status < 300;
            RedfishAnswer answer = ReadAnswer("POST", sessions_path, std::move(outcome));
            if (made) TakeSession(head, answer, sessions_path);
            if (made && token_.empty() && answer.Ok()) {
                answer.failure.problem = RedfishProblem::kStatus;
                answer.failure.status = head.status;
                answer.failure.text = "POST " + sessions_path + " answered without an X-Auth-Token";
            } else if (made && !token_.empty()) {
                answer.failure = {};  // the token is all that is needed; the body is optional
            }
            if (made && EndsWithPasswordChange(answer.message_ids)) {
                answer.failure.problem = RedfishProblem::kPasswordChange;
                answer.failure.text =
                    "POST " + sessions_path + " says that the password must be changed";
            }
            done(std::move(answer));
        });
}

void RedfishSession::TakeSession(const HttpResponse& response, const RedfishAnswer& answer,
                                 const std::string& sessions_path) {
    if (!session_path_.empty()) stale_paths_.push_back(session_path_);
    token_ = response.Header("x-auth-token");
    session_path_ = LinkPath(response.Header("location"));
    if (session_path_.empty()) session_path_ = LinkPath(Text(answer.body, "@odata.id"));
    const std::string id = Text(answer.body, "Id");
    if (session_path_.empty() && !id.empty()) {
        session_path_ = LinkPath(sessions_path + "/" + id);
    }
}

void RedfishSession::UseBasic() {
    is_basic_ = true;
}

void RedfishSession::Authorize(HttpRequest& request) const {
    if (is_basic_) {
        request.basic = std::make_pair(credentials_.user, credentials_.password);
    } else if (!token_.empty()) {
        request.headers.emplace_back("X-Auth-Token", token_);
    }
}

void RedfishSession::LogOut(LoggedOut done) {
    std::vector<std::string> paths = std::exchange(stale_paths_, {});
    const std::string token = std::exchange(token_, std::string());
    RedfishFailure failure;
    if (!session_path_.empty()) {
        paths.push_back(std::exchange(session_path_, std::string()));
    } else if (!token.empty()) {
        failure.problem = RedfishProblem::kStatus;
        failure.text = "the service did not tell the session's address";
    }
    DeleteNext(std::move(paths), token, failure, std::move(done));
}

// One after the other, the session in force last: its token is good for deleting the others.
void RedfishSession::DeleteNext(std::vector<std::string> paths, const std::string& token,
                                const RedfishFailure& failure, LoggedOut done) {
    if (paths.empty()) {
        done(failure);
        return;
    }
    HttpRequest request;
    request.method = HttpMethod::kDelete;
    request.target = paths.front();
    request.timeout = timeout_;
    request.headers = {{"Accept", "application/json"}, {"OData-Version", "4.0"}};
    if (!token.empty()) request.headers.emplace_back("X-Auth-Token", token);
    transport_.Submit(std::move(request), [this, paths = std::move(paths), token, failure,
                                           done = std::move(done)](HttpOutcome&& outcome) mutable {
        RedfishFailure now = failure;
        if (!IsGone(outcome)) now = ReadAnswer("DELETE", paths.front(), std::move(outcome)).failure;
        paths.erase(paths.begin());
        DeleteNext(std::move(paths), token, now, std::move(done));
    });
}

}  // namespace Vantix::transport
