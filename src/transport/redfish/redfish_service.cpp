#include "transport/redfish/redfish_service.h"

#include <algorithm>
#include <utility>

#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::transport {

using namespace json;

namespace {

constexpr const char* kRootPath = "/redfish/v1/";
constexpr const char* kStandardSessionsPath = "/redfish/v1/SessionService/Sessions";
constexpr Milliseconds kStepWait{100};
constexpr int kUsualTries = 4;
constexpr int kOptionalTries = 2;

int TriesOf(const GetOptions& options) {
    if (options.is_attempt) return 1;
    return options.is_optional ? kOptionalTries : kUsualTries;
}

// The services that refuse sessions answer in many ways; only a refused password is final.
bool MayFallBackToBasic(const RedfishFailure& failure) {
    switch (failure.problem) {
        case RedfishProblem::kNone:
        case RedfishProblem::kNotReached:
        case RedfishProblem::kUnauthorized:
        case RedfishProblem::kPasswordChange:
            return false;
        default:
            return true;
    }
}

// Another path may serve sessions: this one does not know the request.
bool IsWrongSessionsPath(const RedfishFailure& failure) {
    return failure.problem == RedfishProblem::kNotFound || failure.status == 405 ||
           failure.status == 501;
}

// Services with few connections drop those beyond their number during the handshake.
bool NeverLeft(const RedfishFailure& failure) {
    if (failure.transport == HttpErrorKind::kReset) return failure.never_sent;
    return failure.transport == HttpErrorKind::kConnect ||
           failure.transport == HttpErrorKind::kConnectTimeout;
}

}  // namespace

RedfishService::RedfishService(HttpTransport& transport, RedfishSettings settings)
    : transport_(transport),
      settings_(std::move(settings)),
      session_(transport_, settings_.credentials, settings_.request_timeout) {}

// ---- opening -----------------------------------------------------------------------------------

RedfishFailure RedfishService::Open() {
    RedfishAnswer root;
    RedfishAnswer login;
    bool root_done = false;
    bool login_done = settings_.login == LoginMethod::kBasic;
    HttpRequest request;
    request.target = kRootPath;
    request.timeout = settings_.request_timeout;
    request.headers = {{"Accept", "application/json"}, {"OData-Version", "4.0"}};
    transport_.Submit(std::move(request), [&](HttpOutcome&& outcome) {
        root = ReadAnswer("GET", kRootPath, std::move(outcome));
        root_done = true;
    });
    if (!login_done) {
        session_.LogIn(kStandardSessionsPath, [&](RedfishAnswer&& answer) {
            login = std::move(answer);
            login_done = true;
        });
    }
    StepUntil([&] { return root_done && login_done; });
    if (!session_.Token().empty() && settings_.on_secret) settings_.on_secret(session_.Token());
    const bool root_answered = root.failure.problem != RedfishProblem::kNotReached;
    if (root_answered && NeverLeft(login.failure)) login = LogInAt(kStandardSessionsPath);
    // What the peer said of user and password outranks all else: it must be counted.
    if (login.failure.problem == RedfishProblem::kUnauthorized) return Refused(login.failure);
    if (login.failure.problem == RedfishProblem::kPasswordChange) return login.failure;
    if (RedfishFailure failure = EnsureRoot(std::move(root), login.failure)) return failure;
    return EnsureLogin(std::move(login));
}

// A root that wants credentials is asked again when there are some.
RedfishFailure RedfishService::EnsureRoot(RedfishAnswer&& root, const RedfishFailure& login) {
    if (root.failure.status == 401) {
        if (session_.Token().empty()) {
            const bool may_use_basic =
                settings_.login == LoginMethod::kBasic ||
                (settings_.login == LoginMethod::kAuto && MayFallBackToBasic(login));
            if (!may_use_basic) return login ? login : root.failure;
            session_.UseBasic();
        }
        root = GetNow(kRootPath, true);
        if (root.failure.status == 401) return Refused(root.failure);
    }
    if (root.failure) return root.failure;
    root_ = std::move(root.body);
    return {};
}

RedfishFailure RedfishService::EnsureLogin(RedfishAnswer&& first) {
    if (session_.IsBasic()) return {};  // the root was read with it: it works
    if (settings_.login == LoginMethod::kBasic) return LogInWithBasic();
    RedfishAnswer login = std::move(first);
    if (IsWrongSessionsPath(login.failure)) {
        const std::string linked = LinkedSessionsPath();
        if (!linked.empty() && linked != kStandardSessionsPath) login = LogInAt(linked);
    }
    if (!login.failure) return {};
    if (login.failure.problem == RedfishProblem::kUnauthorized) return Refused(login.failure);
    if (settings_.login == LoginMethod::kAuto && MayFallBackToBasic(login.failure)) {
        const RedfishFailure basic = LogInWithBasic();
        // When Basic does not work either, the first refusal tells more.
        const bool says_more = basic.problem == RedfishProblem::kUnauthorized ||
                               login.failure.problem != RedfishProblem::kSessionLimit;
        return !basic || says_more ? basic : login.failure;
    }
    return login.failure;
}

RedfishAnswer RedfishService::LogInAt(const std::string& path) {
    RedfishAnswer login;
    if (settings_.may_log_in && !settings_.may_log_in()) {
        login.failure.problem = RedfishProblem::kUnauthorized;
        login.failure.text = "no further login: user or password were refused before";
        return login;
    }
    bool done = false;
    session_.LogIn(path, [&](RedfishAnswer&& answer) {
        login = std::move(answer);
        done = true;
    });
    StepUntil([&] { return done; });
    if (!session_.Token().empty() && settings_.on_secret) settings_.on_secret(session_.Token());
    return login;
}

// Basic has no login of its own: one request alone tells whether it works, so that a wrong password
// is offered once and not with every request in flight.
RedfishFailure RedfishService::LogInWithBasic() {
    session_.UseBasic();
    std::vector<std::string> paths;
    // Some services show the session service to everybody: it comes last.
    for (const char* name : {"Systems", "Managers", "Chassis", "SessionService"}) {
        std::string path = LinkPath(Link(root_, name));
        if (!path.empty()) paths.push_back(std::move(path));
    }
    if (paths.empty()) paths.emplace_back("/redfish/v1/Systems");
    for (const std::string& path : paths) {
        const RedfishAnswer probe = GetNow(path, true);
        if (probe.failure.status == 401) return Refused(probe.failure);
        if (probe.Ok() || probe.failure.problem != RedfishProblem::kNotFound) {
            return probe.failure.problem == RedfishProblem::kNotReached ||
                           probe.failure.problem == RedfishProblem::kPasswordChange
                       ? probe.failure
                       : RedfishFailure();
        }
    }
    return {};
}

std::string RedfishService::LinkedSessionsPath() {
    if (const auto* links = Object(root_, "Links")) {
        const std::string path = LinkPath(Link(*links, "Sessions"));
        if (!path.empty()) return path;
    }
    const std::string service_path = LinkPath(Link(root_, "SessionService"));
    if (service_path.empty()) return {};
    const RedfishAnswer service = GetNow(service_path, false);
    return service.Ok() ? LinkPath(Link(service.body, "Sessions")) : std::string();
}

RedfishFailure RedfishService::Refused(const RedfishFailure& failure) {
    if (settings_.on_login_refused) settings_.on_login_refused(failure.text);
    return failure;
}

RedfishAnswer RedfishService::GetNow(const std::string& target, bool authorized) {
    HttpRequest request;
    request.target = target;
    request.timeout = settings_.request_timeout;
    request.headers = {{"Accept", "application/json"}, {"OData-Version", "4.0"}};
    if (authorized) session_.Authorize(request);
    RedfishAnswer answer;
    bool done = false;
    transport_.Submit(std::move(request), [&](HttpOutcome&& outcome) {
        answer = ReadAnswer("GET", target, std::move(outcome));
        done = true;
    });
    StepUntil([&] { return done; });
    return answer;
}

// ---- reading -----------------------------------------------------------------------------------

void RedfishService::Get(const std::string& target, GetOptions options, Handler handler) {
    auto request = std::make_shared<Pending>();
    request->target = target;
    request->options = options;
    request->handler = std::move(handler);
    Send(std::move(request));
}

void RedfishService::Send(std::shared_ptr<Pending> request) {
    if (is_stopped_) return;
    if (session_.IsLoginPending() || !waiting_for_login_.empty()) {
        waiting_for_login_.push_back(std::move(request));
        return;
    }
    HttpRequest http;
    http.target = request->target;
    http.timeout =
        request->options.is_slow ? settings_.inventory_timeout : settings_.request_timeout;
    http.max_tries = TriesOf(request->options);
    http.headers = {{"Accept", "application/json"}, {"OData-Version", "4.0"}};
    session_.Authorize(http);
    request->token = session_.Token();
    transport_.Submit(std::move(http), [this, request](HttpOutcome&& outcome) {
        Answered(request, std::move(outcome));
    });
}

void RedfishService::Answered(const std::shared_ptr<Pending>& request, HttpOutcome&& outcome) {
    const bool is_refused = outcome.Answered() && outcome.response.status == 401;
    if (is_refused && !session_.IsBasic() && !request->repeated && !login_lost_) {
        request->repeated = true;
        if (request->token != session_.Token()) {
            Send(request);  // a newer session is in force already
            return;
        }
        if (!relogin_used_ || session_.IsLoginPending()) {
            LogInAgain(request);
            return;
        }
    }
    if (is_refused) login_lost_ = true;
    request->handler(ReadAnswer("GET", request->target, std::move(outcome)));
}

void RedfishService::LogInAgain(const std::shared_ptr<Pending>& request) {
    waiting_for_login_.push_back(request);
    if (session_.IsLoginPending()) return;
    relogin_used_ = true;
    std::string path = kStandardSessionsPath;
    if (const auto* links = Object(root_, "Links")) {
        const std::string linked = LinkPath(Link(*links, "Sessions"));
        if (!linked.empty()) path = linked;
    }
    if (settings_.may_log_in && !settings_.may_log_in()) {
        RedfishAnswer refused;
        refused.failure.problem = RedfishProblem::kUnauthorized;
        refused.failure.text = "the session ended and no further login is allowed";
        Relogged(refused);
        return;
    }
    session_.LogIn(path, [this](RedfishAnswer&& answer) { Relogged(answer); });
}

void RedfishService::Relogged(const RedfishAnswer& answer) {
    auto waiting = std::exchange(waiting_for_login_, {});
    if (!answer.failure) {
        if (settings_.on_secret) settings_.on_secret(session_.Token());
        for (auto& request : waiting) Send(std::move(request));
        return;
    }
    login_lost_ = true;
    if (answer.failure.problem == RedfishProblem::kUnauthorized) (void)Refused(answer.failure);
    for (auto& request : waiting) {
        RedfishAnswer failed;
        failed.failure = answer.failure;
        failed.failure.text = "GET " + request->target + ": " + answer.failure.text;
        request->handler(std::move(failed));
    }
}

bool RedfishService::Step() {
    return transport_.Step(kStepWait);
}

void RedfishService::StepUntil(const std::function<bool()>& is_done) {
    while (!is_done() && Step()) {
    }
}

std::string RedfishService::ExpandQuery(int levels) const {
    if (expand_refused_) return {};
    const auto* features = Object(root_, "ProtocolFeaturesSupported");
    const auto* expand = features == nullptr ? nullptr : Object(*features, "ExpandQuery");
    if (expand == nullptr) return {};
    const std::int64_t most = std::max<std::int64_t>(1, Integer(*expand, "MaxLevels").value_or(1));
    const std::string depth =
        OptionalBool(*expand, "Levels").value_or(false)
            ? "($levels=" + std::to_string(std::min<std::int64_t>(levels, most)) + ")"
            : "";
    if (OptionalBool(*expand, "NoLinks").value_or(false)) return "$expand=." + depth;
    if (OptionalBool(*expand, "ExpandAll").value_or(false)) return "$expand=*" + depth;
    return {};
}

RedfishFailure RedfishService::Close() {
    RedfishFailure failure;
    bool done = false;
    session_.LogOut([&](const RedfishFailure& told) {
        failure = told;
        done = true;
    });
    StepUntil([&] { return done; });
    return failure;
}

}  // namespace Vantix::transport
