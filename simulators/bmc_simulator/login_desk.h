// Who may ask: sessions (made, used, ended, expired) and Basic credentials, with the ways in which
// real BMCs get this wrong. Counts what it decides. Knows no resources but the sessions themselves.

#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "bmc_simulator/bmc_counts.h"
#include "bmc_simulator/bmc_options.h"
#include "bmc_simulator/service_message.h"

namespace simulators {

class LoginDesk {
  public:
    /// Both references must outlive the desk; the options may change between calls.
    LoginDesk(const BmcOptions& options, BmcCounts& counts);

    /// POST to the sessions at `sessions_path`.
    [[nodiscard]] ServiceReply Open(const ServiceRequest& request, std::string_view sessions_path);
    /// DELETE of the session with that id: 204, or 404.
    [[nodiscard]] ServiceReply Close(const std::string& id);
    /// Nothing when the request may pass, else the answer that turns it away (401, 403).
    [[nodiscard]] std::optional<ServiceReply> TurnAway(const ServiceRequest& request);
    /// The collection of open sessions.
    [[nodiscard]] ServiceReply List(std::string_view sessions_path) const;
    /// One session: 200, or 404.
    [[nodiscard]] ServiceReply Show(std::string_view sessions_path, const std::string& id) const;
    void ForgetAll();

  private:
    struct Session {
        std::string token;
        int requests_left = 0;  ///< -1: no limit
    };

    [[nodiscard]] std::optional<ServiceReply> RefuseBeforePassword(const ServiceRequest& request);
    [[nodiscard]] ServiceReply WrongCredentials();
    [[nodiscard]] ServiceReply Made(const std::string& id, const ServiceRequest& request,
                                    std::string_view sessions_path) const;
    [[nodiscard]] bool TokenPasses(const std::string& token);
    [[nodiscard]] bool BasicPasses(const std::string& authorization);

    const BmcOptions& options_;
    BmcCounts& counts_;
    std::map<std::string, Session> sessions_;  ///< by id
    int next_id_ = 1;
    int wrong_logins_ = 0;
};

}  // namespace simulators
