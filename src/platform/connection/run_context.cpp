#include "platform/connection/run_context.h"

#include <algorithm>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/log/log.h"

namespace Vantix::VantixConnection {
namespace {

constexpr const char* kSource = "platform/connection/run_context";

static_assert(std::atomic<bool>::is_always_lock_free, "Cancel() is called by signal handlers");

}  // namespace

// What a service does not have cannot be missing from its report.
bool IsGap(const SourceStatus& status) {
    return status.required && status.state != SourceState::kComplete &&
           status.state != SourceState::kUnsupported;
}

const char* SourceStateText(SourceState state) {
    switch (state) {
        case SourceState::kComplete:
            return "complete";
        case SourceState::kPartial:
            return "partial";
        case SourceState::kUnsupported:
            return "unsupported";
        case SourceState::kDenied:
            return "denied";
        case SourceState::kTimeout:
            return "timeout";
        case SourceState::kFailed:
            return "failed";
        case SourceState::kNotTried:
            return "not tried";
    }
    return "not tried";
}

TarselResult LoginBudgetSpent(const std::string& target) {
    return TarselResult(AUTHENTICATION_FAILED,
                        "No further login is tried on " + target +
                            ": user name or password was refused before; check both and start "
                            "the scan again.");
}

RunContext::RunContext(int login_attempts)
    : login_attempts_(std::max(1, login_attempts)), last_failure_(0, "") {}

RunContext::~RunContext() = default;

void RunContext::Cancel() noexcept {
    cancelled_.store(true);
}

bool RunContext::IsCancelled() const noexcept {
    return cancelled_.load();
}

bool RunContext::MayTryLogin() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return refused_logins_ < login_attempts_;
}

void RunContext::LoginRefused(const std::string& what) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++refused_logins_;
    }
    Log(2, kSource, __LINE__).Stream() << "Login refused: " << what;
}

void RunContext::RecordFailure(const TarselResult& failure, bool may_other_ports_answer) {
    const std::lock_guard<std::mutex> lock(mutex_);
    last_failure_ = failure;
    may_other_ports_answer_ = may_other_ports_answer;
}

bool RunContext::MayOtherPortsAnswer() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return may_other_ports_answer_;
}

TarselResult RunContext::LastFailure() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return last_failure_;
}

void RunContext::Remember(const std::string& key, const std::string& value) {
    const std::lock_guard<std::mutex> lock(mutex_);
    findings_[key] = value;
}

std::string RunContext::Recall(const std::string& key) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = findings_.find(key);
    return found == findings_.end() ? std::string() : found->second;
}

void RunContext::KeepAccount(BmcAccount account) {
    const std::lock_guard<std::mutex> lock(mutex_);
    account_ = std::move(account);
}

BmcAccount RunContext::KeptAccount() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return account_;
}

void RunContext::ReportSource(SourceStatus status) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto known =
        std::find_if(sources_.begin(), sources_.end(),
                     [&status](const SourceStatus& old) { return old.source == status.source; });
    if (known != sources_.end()) {
        *known = std::move(status);
    } else {
        sources_.push_back(std::move(status));
    }
}

std::vector<SourceStatus> RunContext::Sources() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return sources_;
}

bool RunContext::IsPartial() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return std::any_of(sources_.begin(), sources_.end(), IsGap);
}

void RunContext::AddNotice(const std::string& sentence) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (std::find(notices_.begin(), notices_.end(), sentence) == notices_.end()) {
        notices_.push_back(sentence);
    }
}

std::vector<std::string> RunContext::Notices() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return notices_;
}

void RunContext::Activity(const std::string& text) const {
    if (on_activity) on_activity(text);
}

}  // namespace Vantix::VantixConnection
