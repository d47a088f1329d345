#include "bmc_simulator/login_desk.h"

#include <openssl/evp.h>
#include <algorithm>
#include <boost/json.hpp>
#include <random>

namespace simulators {
namespace {

namespace json = boost::json;

constexpr std::string_view kPasswordChange = "Base.1.12.PasswordChangeRequired";

std::string RandomToken() {
    static constexpr std::string_view kDigits = "0123456789abcdef";
    std::random_device device;
    std::string token;
    for (int i = 0; i < 32; ++i) token.push_back(kDigits[device() % kDigits.size()]);
    return token;
}

std::string TextField(const json::value& body, std::string_view name) {
    const json::object* object = body.if_object();
    const json::value* field = object ? object->if_contains(name) : nullptr;
    return field && field->is_string() ? std::string(std::string_view(field->get_string()))
                                       : std::string();
}

json::object PasswordChangeMessage() {
    return {{"@odata.type", "#Message.v1_1_1.Message"},
            {"MessageId", json::string(kPasswordChange)},
            {"Message", "The password for this account must be changed before access is granted."},
            {"Severity", "Critical"}};
}

ServiceReply JsonReply(int status, const json::object& body) {
    ServiceReply reply;
    reply.status = status;
    reply.body = json::serialize(body);
    return reply;
}

json::object SessionBody(std::string_view path, const std::string& id, const std::string& user) {
    return {{"@odata.id", std::string(path) + "/" + id},
            {"@odata.type", "#Session.v1_3_0.Session"},
            {"Id", id},
            {"Name", "User Session"},
            {"UserName", user}};
}

std::string Base64(const std::string& text) {
    std::string encoded(4 * ((text.size() + 2) / 3) + 1, '\0');
    const int length = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                                       reinterpret_cast<const unsigned char*>(text.data()),
                                       static_cast<int>(text.size()));
    encoded.resize(static_cast<std::size_t>(length));
    return encoded;
}

}  // namespace

LoginDesk::LoginDesk(const BmcOptions& options, BmcCounts& counts)
    : options_(options), counts_(counts) {}

std::optional<ServiceReply> LoginDesk::RefuseBeforePassword(const ServiceRequest& request) {
    if (options_.refuse_basic_on_login && FindHeader(request.headers, "Authorization")) {
        return ErrorReply(400, "Base.1.12.GeneralError",
                          "A session must not be asked for with an Authorization header.");
    }
    if (!options_.allow_session) return ErrorReply(405, "Base.1.12.OperationNotAllowed");
    if (options_.session_refusal_status != 0) {
        return ErrorReply(options_.session_refusal_status, options_.session_refusal_message_id);
    }
    return std::nullopt;
}

ServiceReply LoginDesk::WrongCredentials() {
    ++counts_.logins_refused;
    ++wrong_logins_;
    ServiceReply reply =
        ErrorReply(401, "Base.1.12.ResourceAtUriUnauthorized", "Wrong user name or password.");
    reply.headers.emplace_back("WWW-Authenticate", "Basic realm=\"simulated BMC\"");
    return reply;
}

ServiceReply LoginDesk::Open(const ServiceRequest& request, std::string_view sessions_path) {
    if (auto refusal = RefuseBeforePassword(request)) return *refusal;
    boost::system::error_code error;
    const json::value body = json::parse(request.body, error);
    if (error) return ErrorReply(400, "Base.1.12.MalformedJSON");
    const bool locked = options_.lock_out_after > 0 && wrong_logins_ >= options_.lock_out_after;
    if (locked || TextField(body, "UserName") != options_.user ||
        TextField(body, "Password") != options_.password) {
        return WrongCredentials();
    }
    if (options_.session_slots > 0 &&
        static_cast<int>(sessions_.size()) >= options_.session_slots) {
        return ErrorReply(503, "Base.1.12.SessionLimitExceeded");
    }
    const bool expires =
        options_.token_lifetime_requests > 0 &&
        (options_.tokens_that_expire < 0 || counts_.sessions_made < options_.tokens_that_expire);
    const std::string id = "sim-" + std::to_string(next_id_++);
    sessions_[id] = {RandomToken(), expires ? options_.token_lifetime_requests : -1};
    ++counts_.sessions_made;
    counts_.sessions_open = static_cast<int>(sessions_.size());
    return Made(id, request, sessions_path);
}

ServiceReply LoginDesk::Made(const std::string& id, const ServiceRequest& request,
                             std::string_view sessions_path) const {
    json::object body = SessionBody(sessions_path, id, options_.user);
    if (!options_.session_body_has_odata_id) body.erase("@odata.id");
    if (options_.password_change == PasswordChange::kSaidAtLogin) {
        body["@Message.ExtendedInfo"] = json::array{PasswordChangeMessage()};
    }
    ServiceReply reply = JsonReply(201, body);
    reply.headers.emplace_back("X-Auth-Token", sessions_.find(id)->second.token);
    const std::string* host = FindHeader(request.headers, "Host");
    const std::string origin = "://" + (host ? *host : std::string("localhost"));
    const std::string path = std::string(sessions_path) + "/" + id;
    switch (options_.session_location) {
        case LocationStyle::kRelative:
            reply.headers.emplace_back("Location", path);
            break;
        case LocationStyle::kAbsolute:
            reply.headers.emplace_back("Location",
                                       (options_.plain_http ? "http" : "https") + origin + path);
            break;
        case LocationStyle::kPlainHttp:
            reply.headers.emplace_back("Location", "http" + origin + path);
            break;
        case LocationStyle::kMissing:
            break;
    }
    return reply;
}

ServiceReply LoginDesk::Close(const std::string& id) {
    if (sessions_.erase(id) == 0) return ErrorReply(404, "Base.1.12.ResourceNotFound");
    ++counts_.sessions_ended;
    counts_.sessions_open = static_cast<int>(sessions_.size());
    ServiceReply reply;
    reply.status = 204;
    return reply;
}

bool LoginDesk::TokenPasses(const std::string& token) {
    const auto found = std::ranges::find_if(
        sessions_, [&](const auto& entry) { return entry.second.token == token; });
    if (found == sessions_.end()) return false;
    int& left = found->second.requests_left;
    if (left == 0) {
        sessions_.erase(found);
        ++counts_.sessions_expired;
        counts_.sessions_open = static_cast<int>(sessions_.size());
        return false;
    }
    if (left > 0) --left;
    ++counts_.token_requests;
    return true;
}

bool LoginDesk::BasicPasses(const std::string& authorization) {
    const bool locked = options_.lock_out_after > 0 && wrong_logins_ >= options_.lock_out_after;
    const std::string right = "Basic " + Base64(options_.user + ":" + options_.password);
    if (!options_.allow_basic || locked || authorization != right) return false;
    ++counts_.basic_requests;
    return true;
}

std::optional<ServiceReply> LoginDesk::TurnAway(const ServiceRequest& request) {
    const std::string* token = FindHeader(request.headers, "X-Auth-Token");
    const std::string* authorization = FindHeader(request.headers, "Authorization");
    const bool passes = token ? TokenPasses(*token) : authorization && BasicPasses(*authorization);
    if (passes) {
        const bool forbidden = options_.password_change == PasswordChange::kForbidsTheRest;
        if (!forbidden || request.method == "DELETE") return std::nullopt;
        return ErrorReply(403, kPasswordChange);
    }
    if (!token && authorization) return WrongCredentials();
    ServiceReply reply =
        ErrorReply(401, "Base.1.12.NoValidSession", "There is no valid session established.");
    reply.headers.emplace_back("WWW-Authenticate", "Basic realm=\"simulated BMC\"");
    return reply;
}

ServiceReply LoginDesk::List(std::string_view sessions_path) const {
    json::array members;
    for (const auto& [id, session] : sessions_) {
        members.push_back(json::object{{"@odata.id", std::string(sessions_path) + "/" + id}});
    }
    json::object body{{"@odata.id", json::string(sessions_path)},
                      {"@odata.type", "#SessionCollection.SessionCollection"},
                      {"Name", "Session Collection"},
                      {"Members@odata.count", members.size()}};
    body["Members"] = std::move(members);
    return JsonReply(200, body);
}

ServiceReply LoginDesk::Show(std::string_view sessions_path, const std::string& id) const {
    if (!sessions_.contains(id)) return ErrorReply(404, "Base.1.12.ResourceNotFound");
    return JsonReply(200, SessionBody(sessions_path, id, options_.user));
}

void LoginDesk::ForgetAll() {
    sessions_.clear();
    counts_.sessions_open = 0;
}

}  // namespace simulators
