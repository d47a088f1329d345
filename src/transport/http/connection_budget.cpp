#include "transport/http/connection_budget.h"

#include <algorithm>

namespace Vantix::transport {

void ConnectionBudget::Sent(int flying) {
    open_ = std::max(open_, flying);
}

void ConnectionBudget::Ended(const HttpOutcome& outcome) {
    if (!outcome.Answered()) return;
    const auto connect = static_cast<double>(outcome.response.connect_time.count());
    // Handshakes that ran side by side waited for each other: the shortest is the honest one.
    if (connect > 0 && (handshake_ms_ == 0 || connect < handshake_ms_)) handshake_ms_ = connect;
    ++responses_;
    const auto response = static_cast<double>(outcome.response.response_time.count());
    response_ms_ += (response - response_ms_) / responses_;
}

void ConnectionBudget::GaveUp(int connections) {
    open_ = std::max(1, open_ - connections);
}

bool ConnectionBudget::PrefersIdle() const {
    return responses_ > 0 && handshake_ms_ > 0 && response_ms_ < handshake_ms_;
}

bool ConnectionBudget::MaySend(int flying, int waiting) const {
    if (flying < open_ || open_ == 0 || responses_ == 0) return true;
    const double busy_ms = (flying + waiting) * response_ms_ / open_;
    return busy_ms > handshake_ms_;
}

}  // namespace Vantix::transport
