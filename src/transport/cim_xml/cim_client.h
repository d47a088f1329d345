// A CIM-XML client over any HTTP transport: one operation at a time, each waited for.
//
// Logs in by HTTP Basic with every request, because CIM knows no sessions. Does not retry, but for
// one repetition on a fresh connection where the connection broke: all operations only read. Knows
// nothing of which classes matter.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "transport/cim_xml/cim_answer.h"
#include "transport/cim_xml/cim_request.h"
#include "transport/http/http_transport.h"

namespace Vantix::transport {

struct CimSettings {
    /// User and password; absent: none is ever sent.
    std::optional<std::pair<std::string, std::string>> credentials;
    std::function<bool()> may_log_in;  ///< asked before a login is sent; empty: always
    /// Told when the service refused user and password.
    std::function<void(const std::string& what)> on_login_refused;
};

class CimClient {
  public:
    /// `transport` must outlive the object.
    CimClient(HttpTransport& transport, CimSettings settings);
    CimClient(const CimClient&) = delete;
    CimClient& operator=(const CimClient&) = delete;

    /// Sends the call and waits for its answer. `timeout` is how long the service may keep silent;
    /// 0: for ever.
    [[nodiscard]] CimAnswer Call(const CimCall& call, Milliseconds timeout = kUsualTimeout);

    static constexpr Milliseconds kUsualTimeout{60000};

    /// How many requests were sent, the repetitions included.
    [[nodiscard]] int Requests() const { return requests_; }

  private:
    [[nodiscard]] HttpOutcome Send(const HttpRequest& request);
    [[nodiscard]] HttpOutcome SendOnce(const HttpRequest& request);
    [[nodiscard]] CimAnswer Judge(const HttpOutcome& outcome, int message_id);

    HttpTransport& transport_;
    CimSettings settings_;
    int last_message_id_ = 1000;
    int requests_ = 0;
    bool is_let_in_ = false;   ///< a login was accepted before
    bool is_refused_ = false;  ///< a login was refused: none is sent again
};

}  // namespace Vantix::transport
