// Logging in to a Redfish service and out again (DSP0266, "Redfish session login authentication").
//
// Makes at most one session at a time and knows how to delete every one it made. Does not decide
// when to log in, and never repeats a refused login.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "transport/http/http_transport.h"
#include "transport/redfish/redfish_answer.h"

namespace Vantix::transport {

struct Credentials {
    std::string user;
    std::string password;
};

class RedfishSession {
  public:
    using Done = std::function<void(RedfishAnswer&&)>;
    using LoggedOut = std::function<void(const RedfishFailure&)>;

    /// `transport` must outlive the object.
    RedfishSession(HttpTransport& transport, Credentials credentials, Milliseconds timeout);

    /// Creates a session at `sessions_path` (POST without an Authorization header). On success
    /// later requests carry its token. kPasswordChange is reported also for a session that was
    /// made but may do nothing else; it is then deleted with the others.
    void LogIn(const std::string& sessions_path, Done done);

    /// From now on requests carry HTTP Basic credentials.
    void UseBasic();

    /// Adds token or Basic credentials to `request`, whatever is in force.
    void Authorize(HttpRequest& request) const;

    /// The token in force; empty in Basic mode and before the first login.
    [[nodiscard]] const std::string& Token() const { return token_; }
    [[nodiscard]] bool IsBasic() const { return is_basic_; }
    [[nodiscard]] bool IsLoginPending() const { return login_pending_; }

    /// Deletes every session that was made. `done` tells the last failure, if any; nothing to
    /// delete is a success.
    void LogOut(LoggedOut done);

  private:
    void TakeSession(const HttpResponse& response, const RedfishAnswer& answer,
                     const std::string& sessions_path);
    void DeleteNext(std::vector<std::string> paths, const std::string& token,
                    const RedfishFailure& failure, LoggedOut done);

    HttpTransport& transport_;
    Credentials credentials_;
    Milliseconds timeout_;
    std::string token_;
    std::string session_path_;
    std::vector<std::string> stale_paths_;  ///< of sessions that a later login replaced
    bool is_basic_ = false;
    bool login_pending_ = false;
};

}  // namespace Vantix::transport
