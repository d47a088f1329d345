#include "transport/cim_xml/cim_client.h"

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

// The path that every service has; others are found only by discovery.
constexpr const char* kTarget = "/cimom";
constexpr Milliseconds kStepWait{1000};
constexpr std::size_t kLongestDetail = 200;

bool IsBrokenConnection(HttpErrorKind kind) {
    return kind == HttpErrorKind::kReset || kind == HttpErrorKind::kTruncated ||
           kind == HttpErrorKind::kProtocol;
}

int HexDigit(char letter) {
    if (letter >= '0' && letter <= '9') return letter - '0';
    if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
    if (letter >= 'A' && letter <= 'F') return letter - 'A' + 10;
    return -1;
}

// Servers put their own words percent-encoded into a header.
std::string Decoded(const std::string& text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool has_digits = text[at] == '%' && at + 2 < text.size();
        const int high = has_digits ? HexDigit(text[at + 1]) : -1;
        const int low = has_digits ? HexDigit(text[at + 2]) : -1;
        if (high < 0 || low < 0) {
            plain += text[at];
            continue;
        }
        plain += static_cast<char>(high * 16 + low);
        at += 2;
    }
    return plain;
}

// What headers tell of an error: a service that refuses a request may send no body at all.
std::string ErrorHeaders(const HttpResponse& response) {
    std::string text;
    for (const char* name : {"cimerror", "pgerrordetail", "cimstatuscodedescription"}) {
        const std::string value = CleanStart(Decoded(response.Header(name)), kLongestDetail);
        if (!value.empty()) text += (text.empty() ? "" : "; ") + value;
    }
    return text;
}

std::string StatusText(const HttpResponse& response) {
    std::string text = "HTTP status " + std::to_string(response.status);
    const std::string headers = ErrorHeaders(response);
    if (!headers.empty()) return text + ", " + headers;
    const std::string type = CleanStart(response.Header("content-type"));
    if (!type.empty()) text += ", " + type;
    const std::string start = CleanStart(response.body);
    return start.empty() ? text : text + ": " + start;
}

CimProblem ProblemOfStatus(const HttpResponse& response) {
    switch (response.status) {
        case 401:
            return CimProblem::kUnauthorized;
        case 403:
            return CimProblem::kForbidden;
        default:
            break;
    }
    // A CIM service says in this header why it refuses a request; a web server has no such header.
    const bool is_cim = !response.Header("cimerror").empty();
    const bool is_unserved = response.status == 404 || response.status == 405 ||
                             response.status == 501 || response.status / 100 == 3;
    return is_unserved && !is_cim ? CimProblem::kNoService : CimProblem::kHttpStatus;
}

}  // namespace

CimClient::CimClient(HttpTransport& transport, CimSettings settings)
    : transport_(transport), settings_(std::move(settings)) {}

CimAnswer CimClient::Call(const CimCall& call, Milliseconds timeout) {
    const bool may_log_in = is_let_in_ || !settings_.may_log_in || settings_.may_log_in();
    if (settings_.credentials && (is_refused_ || !may_log_in)) {
        CimAnswer answer;
        answer.failure.problem = CimProblem::kLoginBarred;
        answer.failure.text = "no further login is tried";
        return answer;
    }
    const int message_id = ++last_message_id_;
    HttpRequest request;
    request.method = HttpMethod::kPost;
    request.target = kTarget;
    request.headers = CimHeaders(call);
    request.body = WriteCimMessage(call, message_id);
    request.basic = settings_.credentials;
    request.timeout = timeout;
    return Judge(Send(request), message_id);
}

HttpOutcome CimClient::Send(const HttpRequest& request) {
    HttpOutcome outcome = SendOnce(request);
    if (!IsBrokenConnection(outcome.error.kind)) return outcome;
    transport_.DropIdleConnections();
    return SendOnce(request);
}

HttpOutcome CimClient::SendOnce(const HttpRequest& request) {
    ++requests_;
    HttpOutcome result;
    result.error = {HttpErrorKind::kOther, "the request was given up"};
    bool is_done = false;
    transport_.Submit(request, [&](HttpOutcome&& outcome) {
        result = std::move(outcome);
        is_done = true;
    });
    while (!is_done && transport_.Step(kStepWait)) {
    }
    return result;
}

CimAnswer CimClient::Judge(const HttpOutcome& outcome, int message_id) {
    CimAnswer answer;
    CimFailure& failure = answer.failure;
    if (!outcome.Answered()) {
        failure.problem = CimProblem::kNotReached;
        failure.transport = outcome.error.kind;
        failure.text = outcome.error.text;
        return answer;
    }
    const HttpResponse& response = outcome.response;
    if (response.status == 200) {
        answer = ReadCimAnswer(response.body, message_id);
        const std::string headers = ErrorHeaders(response);
        if (failure && !headers.empty()) failure.text += " (" + headers + ")";
    } else {
        failure.problem = ProblemOfStatus(response);
        failure.text = StatusText(response);
    }
    failure.http_status = response.status;
    if (failure.problem == CimProblem::kUnauthorized && settings_.credentials) {
        is_refused_ = true;
        if (settings_.on_login_refused) settings_.on_login_refused("CIM: " + failure.text);
    }
    is_let_in_ = is_let_in_ || response.status == 200;
    return answer;
}

}  // namespace Vantix::transport
