#include "bmc_simulator/bmc_state.h"

#include <algorithm>
#include <utility>

#include "bmc_simulator/fault_reply.h"

namespace simulators {
namespace {

/// Bodies of other requests hold passwords that no test looks at.
std::string CimBody(const ServiceRequest& request) {
    return request.target == "/cimom" ? request.body : std::string();
}

}  // namespace

BmcState::BmcState(BmcOptions options)
    : options_(std::move(options)), service_(options_, counts_), plan_(options_.faults) {}

int BmcState::TakeConnection() {
    const std::lock_guard lock(mutex_);
    if (options_.max_connections > 0 && counts_.connections_open >= options_.max_connections) {
        ++counts_.connections_refused;
        return 0;
    }
    ++counts_.connections_open;
    counts_.most_connections = std::max(counts_.most_connections, counts_.connections_open);
    return ++counts_.connections;
}

void BmcState::CountHandshake(bool completed) {
    const std::lock_guard lock(mutex_);
    ++(completed ? counts_.handshakes : counts_.handshakes_failed);
}

void BmcState::DropConnection() {
    const std::lock_guard lock(mutex_);
    --counts_.connections_open;
}

BmcState::Taken BmcState::TakeRequest(const ServiceRequest& request, int connection) {
    const std::lock_guard lock(mutex_);
    ++counts_.requests;
    ++counts_.in_flight;
    counts_.most_in_flight = std::max(counts_.most_in_flight, counts_.in_flight);
    if (FindHeader(request.headers, "Authorization")) ++counts_.authorization_headers_seen;
    counts_.log.push_back(
        {request.method, request.target, request.headers, connection, 0, CimBody(request)});
    return {cleared_requests_ + counts_.requests,
            plan_.Next(request.method, request.target, counts_.requests, request.body)};
}

ServiceReply BmcState::Answer(const ServiceRequest& request, const std::optional<Fault>& fault) {
    const std::lock_guard lock(mutex_);
    ServiceReply reply = service_.Answer(request);
    return fault ? ApplyFault(*fault, std::move(reply)) : reply;
}

void BmcState::FinishRequest(int ordinal, int status) {
    const std::lock_guard lock(mutex_);
    --counts_.in_flight;
    const int index = ordinal - cleared_requests_ - 1;
    if (index >= 0 && index < static_cast<int>(counts_.log.size())) {
        counts_.log[static_cast<std::size_t>(index)].status = status;
    }
}

BmcState::Clock::time_point BmcState::HandshakeSlot() {
    const std::lock_guard lock(mutex_);
    if (options_.handshake_delay.count() == 0) return {};
    // A small processor does its public-key work one handshake after the other.
    handshakes_done_ = std::max(handshakes_done_, Clock::now()) + options_.handshake_delay;
    return handshakes_done_;
}

BmcState::Clock::time_point BmcState::ResponseSlot(const std::optional<Fault>& fault) {
    const std::lock_guard lock(mutex_);
    auto pace = options_.latency;
    if (fault && fault->kind == Fault::Kind::kDelay) pace += fault->delay;
    if (pace.count() == 0) return {};
    if (!options_.serialize) return Clock::now() + pace;
    responses_done_ = std::max(responses_done_, Clock::now()) + pace;
    return responses_done_;
}

BmcCounts BmcState::Counts() const {
    const std::lock_guard lock(mutex_);
    return counts_;
}

void BmcState::ResetCounts() {
    const std::lock_guard lock(mutex_);
    BmcCounts fresh;
    fresh.connections_open = counts_.connections_open;
    fresh.in_flight = counts_.in_flight;
    fresh.sessions_open = counts_.sessions_open;
    cleared_requests_ += counts_.requests;
    counts_ = std::move(fresh);
}

BmcOptions BmcState::Options() const {
    const std::lock_guard lock(mutex_);
    return options_;
}

void BmcState::SetOptions(BmcOptions options) {
    const std::lock_guard lock(mutex_);
    options_ = std::move(options);
    plan_ = FaultPlan(options_.faults);
    service_.ReloadReplacedBodies();
}

void BmcState::SetFaults(std::vector<FaultRule> faults) {
    const std::lock_guard lock(mutex_);
    options_.faults = faults;
    plan_ = FaultPlan(std::move(faults));
}

void BmcState::ForgetSessions() {
    const std::lock_guard lock(mutex_);
    service_.ForgetSessions();
}

}  // namespace simulators
