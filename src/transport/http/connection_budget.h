// When is it worth opening one more connection?
//
// A TLS handshake may cost a small controller more than several answers. What one handshake and one
// answer take is learnt from the first exchanges; another connection is opened only when the work
// that waits would keep the open ones busy for longer than its handshake takes.
#pragma once

#include "transport/http/http_types.h"

namespace Vantix::transport {

class ConnectionBudget {
  public:
    /// A request was sent; `flying` are now under way, itself included.
    void Sent(int flying);

    /// Learns from an exchange that ended.
    void Ended(const HttpOutcome& outcome);

    /// So many half-open connections were given up.
    void GaveUp(int connections);

    /// True when a request is answered sooner by an idle connection than by one still opening.
    [[nodiscard]] bool PrefersIdle() const;

    /// Whether another request may be sent now, with `flying` under way and `waiting` ready to go.
    [[nodiscard]] bool MaySend(int flying, int waiting) const;

  private:
    int open_ = 0;             ///< connections believed open: the most that were in use at once
    double handshake_ms_ = 0;  ///< the cheapest one seen; 0: none yet
    double response_ms_ = 0;   ///< average
    int responses_ = 0;
};

}  // namespace Vantix::transport
