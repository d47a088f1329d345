// A Redfish service as a protocol client sees it: root, log-in, resources, log-out.
//
// Reads what it is asked for, each request once; keeps nothing. Knows sessions, Basic, the one
// repeated login of a scan, and what the root says about $expand. Knows nothing of servers.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "transport/http/http_transport.h"
#include "transport/redfish/redfish_answer.h"
#include "transport/redfish/redfish_session.h"

namespace Vantix::transport {

enum class LoginMethod { kAuto, kSession, kBasic };

struct RedfishSettings {
    Credentials credentials;
    LoginMethod login = LoginMethod::kAuto;
    Milliseconds request_timeout{60000};
    Milliseconds inventory_timeout{240000};
    std::function<bool()> may_log_in;                          ///< the login budget; may be empty
    std::function<void(const std::string&)> on_login_refused;  ///< user or password were refused
    std::function<void(const std::string&)> on_secret;         ///< a token that must be masked
    std::function<bool()> is_cancelled;                        ///< may be empty
};

struct GetOptions {
    bool is_slow = false;      ///< inventory timeout instead of the request timeout
    bool is_optional = false;  ///< tried twice at most
    bool is_attempt = false;   ///< tried once: there is a fall-back
};

class RedfishService {
  public:
    using Handler = std::function<void(RedfishAnswer&&)>;

    /// `transport` must outlive the object.
    RedfishService(HttpTransport& transport, RedfishSettings settings);
    RedfishService(const RedfishService&) = delete;
    RedfishService& operator=(const RedfishService&) = delete;

    /// Reads the root and logs in, both together; blocks until both are done. Must be called once,
    /// first. On failure whatever session was made is still deleted by Close().
    [[nodiscard]] RedfishFailure Open();

    [[nodiscard]] const boost::json::object& Root() const { return root_; }

    /// Starts a GET of `target` (path and query). `handler` is called from within Step(). An answer
    /// of 401 leads to one new login a scan and one repetition of the request.
    void Get(const std::string& target, GetOptions options, Handler handler);

    /// Moves everything on; false when nothing is in flight.
    bool Step();

    /// Steps until `is_done`, or nothing is in flight any more.
    void StepUntil(const std::function<bool()>& is_done);

    /// The query that asks for members inline, for example "$expand=.($levels=1)", as deep as
    /// `levels` and the root's MaxLevels allow; empty when the root does not offer it or it has
    /// been refused in this scan.
    [[nodiscard]] std::string ExpandQuery(int levels = 1) const;
    void ExpandRefused() { expand_refused_ = true; }

    /// Nothing more is read: later calls of Get() are dropped and their handlers never called. For
    /// a scan that ends before all was read, so that no late answer starts another request.
    void StopReading() { is_stopped_ = true; }

    /// True once the service refused the session a second time: nothing more can be read.
    [[nodiscard]] bool IsLoginLost() const { return login_lost_; }

    /// Deletes the session. The failure, if any, is a warning to its caller.
    RedfishFailure Close();

  private:
    struct Pending {
        std::string target;
        GetOptions options;
        Handler handler;
        std::string token;  ///< in force when it was sent
        bool repeated = false;
    };
    void Send(std::shared_ptr<Pending> request);
    void Answered(const std::shared_ptr<Pending>& request, HttpOutcome&& outcome);
    void LogInAgain(const std::shared_ptr<Pending>& request);
    void Relogged(const RedfishAnswer& answer);
    [[nodiscard]] RedfishAnswer LogInAt(const std::string& path);
    [[nodiscard]] RedfishAnswer GetNow(const std::string& target, bool authorized);
    [[nodiscard]] RedfishFailure EnsureRoot(RedfishAnswer&& root, const RedfishFailure& login);
    [[nodiscard]] RedfishFailure EnsureLogin(RedfishAnswer&& first);
    [[nodiscard]] RedfishFailure LogInWithBasic();
    [[nodiscard]] std::string LinkedSessionsPath();
    [[nodiscard]] RedfishFailure Refused(const RedfishFailure& failure);

    HttpTransport& transport_;
    RedfishSettings settings_;
    RedfishSession session_;
    boost::json::object root_;
    bool expand_refused_ = false;
    bool relogin_used_ = false;
    bool login_lost_ = false;
    bool is_stopped_ = false;
    std::vector<std::shared_ptr<Pending>> waiting_for_login_;
};

}  // namespace Vantix::transport
