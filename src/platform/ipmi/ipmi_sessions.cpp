#include "platform/ipmi/ipmi_sessions.h"

#include <algorithm>
#include <utility>

#include "platform/log/log.h"
#include "transport/ipmi/raw_answer.h"

namespace Vantix::ipmi {

using transport::IpmiFailure;
using transport::IpmiProblem;
using transport::Milliseconds;

namespace {

constexpr const char* kIpmiSessionsLog = "ipmi_sessions";
constexpr const char* kTool = "ipmitool";
constexpr int kNewerCipher = 17;
constexpr int kOlderCipher = 3;
constexpr int kMostSilentSessions = 2;
constexpr Milliseconds kHardLimit{30000};
constexpr Milliseconds kLookAtCancel{100};

bool IsSilence(IpmiProblem problem) {
    return problem == IpmiProblem::kNoAnswer || problem == IpmiProblem::kTimedOut;
}

}  // namespace

IpmiSessions::IpmiSessions(const VantixConnection::ConnectOption& option,
                           transport::IpmiTarget target, transport::CommandRunner& runner,
                           transport::Clock& clock)
    : option_(option),
      target_(std::move(target)),
      runner_(runner),
      clock_(clock),
      start_(clock.Now()),
      last_end_(start_) {
    try_.cipher = option_.ipmi_cipher == 0 ? kNewerCipher : option_.ipmi_cipher;
    RecallSettings();
}

SessionResult IpmiSessions::Run(const std::vector<std::string>& lines) {
    while (silent_sessions_ < kMostSilentSessions) {
        // Each session is a login of its own.
        if (!target_.host.empty() && !option_.run->MayTryLogin()) {
            return {{IpmiProblem::kAuthentication, "refused before"}, {}, {}};
        }
        if (has_run_) Pause(TimeToNextRun());
        SessionResult result = RunOnce(lines);
        if (!result.texts.empty() || !PrepareNextTry(result.failure)) return result;
    }
    return {{IpmiProblem::kNoAnswer, "it did not answer twice before"}, {}, {}};
}

SessionResult IpmiSessions::RunOnce(const std::vector<std::string>& lines) {
    SessionResult result;
    if (TimeLeft() <= Milliseconds(0)) {
        result.failure = {IpmiProblem::kTimedOut, "the time for the whole scan ran out"};
        return result;
    }
    transport::CommandOutcome outcome = runner_.Run(CommandFor(lines));
    has_run_ = true;
    last_end_ = clock_.Now();
    result.texts = transport::SplitAnswers(outcome.output, lines.size());
    const bool is_whole = outcome.end == transport::CommandEnd::kExited && !result.texts.empty();
    if (!is_whole) result.failure = transport::FailureOfRun(outcome);
    result.error_output = std::move(outcome.error_output);
    Note(result);
    return result;
}

transport::Command IpmiSessions::CommandFor(const std::vector<std::string>& lines) const {
    transport::Command command = transport::IpmiToolCommand(kTool, target_, try_, lines);
    command.time_limit = TimeLeft();
    const auto run = option_.run;
    command.is_cancelled = [run] { return run->IsCancelled(); };
    return command;
}

Milliseconds IpmiSessions::TimeLeft() const {
    if (option_.deadline_seconds == 0) return kHardLimit;
    const Milliseconds used = std::chrono::duration_cast<Milliseconds>(clock_.Now() - start_);
    return std::min(kHardLimit, Milliseconds(1000LL * option_.deadline_seconds) - used);
}

void IpmiSessions::Note(const SessionResult& result) {
    // Error lines of a session that worked tell of single commands only.
    Log(4, kIpmiSessionsLog, __LINE__).Stream()
        << "IPMI session, cipher suite " << try_.cipher << ", "
        << (result.texts.empty() ? "not opened: " : "opened ") << result.failure.text;
    if (result.failure) {
        Log(4, kIpmiSessionsLog, __LINE__).Stream() << "ipmitool said: " << result.error_output;
    }
    if (result.failure.problem == IpmiProblem::kAuthentication) {
        option_.run->LoginRefused("IPMI, " + result.failure.text);
    }
    if (IsSilence(result.failure.problem)) {
        ++silent_sessions_;
        return;
    }
    if (result.texts.empty()) return;
    silent_sessions_ = 0;
    has_worked_ = true;
    option_.run->Remember(MemoryKey("cipher"), std::to_string(try_.cipher));
    option_.run->Remember(MemoryKey("privilege"), try_.privilege);
}

bool IpmiSessions::PrepareNextTry(const IpmiFailure& failure) {
    if (option_.run->IsCancelled()) return false;
    switch (failure.problem) {
        case IpmiProblem::kCipher:
        case IpmiProblem::kOther:
            return NextCipher();
        case IpmiProblem::kPrivilege:
            return NextPrivilege();
        case IpmiProblem::kBusy:
            if (++busy_answers_ > kMostBusyAnswers) return false;
            option_.run->Activity("the BMC is busy, waiting to ask it again over IPMI");
            Pause(kBusyPause);
            return !option_.run->IsCancelled();
        default:
            return false;
    }
}

// A suite that worked, or that the user named, is not the reason.
bool IpmiSessions::NextCipher() {
    const bool is_fixed = has_worked_ || option_.ipmi_cipher != 0 || target_.host.empty();
    if (is_fixed || try_.cipher != kNewerCipher) return false;
    try_.cipher = kOlderCipher;
    return true;
}

bool IpmiSessions::NextPrivilege() {
    if (try_.privilege == "USER" || target_.host.empty()) return false;
    try_.privilege = try_.privilege.empty() ? "OPERATOR" : "USER";
    return true;
}

Milliseconds IpmiSessions::TimeToNextRun() const {
    const auto since = std::chrono::duration_cast<Milliseconds>(clock_.Now() - last_end_);
    return Milliseconds(option_.ipmi_interval_ms) - since;
}

void IpmiSessions::Pause(Milliseconds duration) {
    const auto until = clock_.Now() + duration;
    while (clock_.Now() < until && !option_.run->IsCancelled()) {
        const auto left = std::chrono::duration_cast<Milliseconds>(until - clock_.Now());
        clock_.Wait(std::clamp(left, Milliseconds(1), kLookAtCancel));
    }
}

std::string IpmiSessions::MemoryKey(const char* what) const {
    return std::string("IPMI ") + what + " " + target_.host + " " + std::to_string(target_.port);
}

void IpmiSessions::RecallSettings() {
    const std::string cipher = option_.run->Recall(MemoryKey("cipher"));
    if (cipher.empty()) return;
    try_.cipher = cipher == std::to_string(kOlderCipher) ? kOlderCipher : try_.cipher;
    try_.privilege = option_.run->Recall(MemoryKey("privilege"));
    has_worked_ = true;
}

}  // namespace Vantix::ipmi
