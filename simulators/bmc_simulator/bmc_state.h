// What the serving thread and the tests share: options, counts, the service and the plan of faults,
// behind one lock. Every function may be called from any thread. Knows no sockets.

#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <vector>

#include "bmc_simulator/bmc_counts.h"
#include "bmc_simulator/bmc_options.h"
#include "bmc_simulator/bmc_service.h"
#include "bmc_simulator/fault_plan.h"
#include "bmc_simulator/service_message.h"

namespace simulators {

class BmcState {
  public:
    using Clock = std::chrono::steady_clock;

    /// A request taken in: its ordinal since the start, and the fault that it is to show.
    struct Taken {
        int ordinal = 0;
        std::optional<Fault> fault;
    };

    /// Reads the scenario; throws std::runtime_error where that fails.
    explicit BmcState(BmcOptions options);

    /// Ordinal of the new connection from 1; 0 where it is one too many.
    [[nodiscard]] int TakeConnection();
    void CountHandshake(bool completed);
    void DropConnection();

    [[nodiscard]] Taken TakeRequest(const ServiceRequest& request, int connection);
    [[nodiscard]] ServiceReply Answer(const ServiceRequest& request,
                                      const std::optional<Fault>& fault);
    /// `status` of the answer; 0 where there is none.
    void FinishRequest(int ordinal, int status);

    /// When the TLS handshake of a new connection may start; a past time for at once.
    [[nodiscard]] Clock::time_point HandshakeSlot();
    /// When the answer to a request that has just come may leave; a past time for at once.
    [[nodiscard]] Clock::time_point ResponseSlot(const std::optional<Fault>& fault);

    [[nodiscard]] BmcCounts Counts() const;
    void ResetCounts();
    [[nodiscard]] BmcOptions Options() const;
    void SetOptions(BmcOptions options);
    void SetFaults(std::vector<FaultRule> faults);
    void ForgetSessions();

  private:
    mutable std::mutex mutex_;
    BmcOptions options_;
    BmcCounts counts_;
    BmcService service_;
    FaultPlan plan_;
    int cleared_requests_ = 0;  ///< whose records ResetCounts threw away
    Clock::time_point handshakes_done_;
    Clock::time_point responses_done_;
};

}  // namespace simulators
