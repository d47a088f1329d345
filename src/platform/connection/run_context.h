// What one run against one target learns and must share between its protocol legs and with the
// front end: the login budget, the wish to stop, and how complete each source of facts was.
//
// Held by shared pointer in ConnectOption, so that the copies of one option record share it.
// Nothing in it outlives the run. Safe to use from several threads.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "common/export.h"
#include "common/result/tarsel_result.h"

namespace Vantix::VantixConnection {

enum class SourceState { kComplete, kPartial, kUnsupported, kDenied, kTimeout, kFailed, kNotTried };

/// The lower-case word for a state: "complete", "partial", "unsupported", "denied", "timeout",
/// "failed", "not tried".
TARSEL_EXPORT const char* SourceStateText(SourceState state);

/// How one source of facts (for example "firmware inventory") answered.
struct SourceStatus {
    std::string source;
    SourceState state = SourceState::kNotTried;
    int items_read = 0;
    int items_failed = 0;
    bool required = true;             ///< optional sources never make a scan partial
    std::string detail;               ///< one sentence, empty when there is nothing to say
    std::vector<std::string> issues;  ///< what was left out: resource and cause, one text each
};

/// True when a required source is known but was not read completely.
TARSEL_EXPORT bool IsGap(const SourceStatus& status);

/// An account that a BMC made for this run.
struct BmcAccount {
    std::string user;      ///< empty: there is none
    std::string password;  ///< never logged
};

/// The failure of a protocol that tries no login at `target`, because none may be tried any more.
[[nodiscard]] TarselResult LoginBudgetSpent(const std::string& target);

class TARSEL_EXPORT RunContext {
  public:
    /// `login_attempts`: how many refused logins this run may cause at its target (at least 1).
    explicit RunContext(int login_attempts = 1);
    ~RunContext();
    RunContext(const RunContext&) = delete;
    RunContext& operator=(const RunContext&) = delete;

    // ---- stopping -------------------------------------------------------------------------------
    /// Asks every wait of the run to end soon. Async-signal-safe.
    void Cancel() noexcept;
    [[nodiscard]] bool IsCancelled() const noexcept;

    // ---- login budget: one for all protocols ----------------------------------------------------
    /// False once the budget of refused logins is spent: no protocol may try another login.
    [[nodiscard]] bool MayTryLogin() const;
    /// Records that the target refused a login because of user name or password.
    void LoginRefused(const std::string& what);

    /// The last failure that concerns the target itself rather than one protocol (refused login,
    /// untrusted certificate, unreachable host); success when there was none. A later protocol leg
    /// reports it instead of trying what is bound to fail or would be unsafe.
    /// `may_other_ports_answer`: what failed is one port of the target, not the way to it.
    void RecordFailure(const TarselResult& failure, bool may_other_ports_answer = false);
    [[nodiscard]] TarselResult LastFailure() const;
    /// What was said of the last failure; true when there was none.
    [[nodiscard]] bool MayOtherPortsAnswer() const;

    // ---- findings -------------------------------------------------------------------------------
    /// What one protocol leg found out about the target and a later one need not find out again,
    /// for example which cipher suite works. Never a secret. Recall gives an empty text for unknown
    /// keys.
    void Remember(const std::string& key, const std::string& value);
    [[nodiscard]] std::string Recall(const std::string& key) const;

    /// The account that the BMC made for this run, kept so that it need not make another one.
    void KeepAccount(BmcAccount account);
    [[nodiscard]] BmcAccount KeptAccount() const;

    // ---- completeness ---------------------------------------------------------------------------
    /// Stores the status of a source; a later one of the same name replaces it.
    void ReportSource(SourceStatus status);
    [[nodiscard]] std::vector<SourceStatus> Sources() const;
    /// True when one of the sources is a gap.
    [[nodiscard]] bool IsPartial() const;

    /// One sentence the user should see once (for example "certificate check is off").
    void AddNotice(const std::string& sentence);
    [[nodiscard]] std::vector<std::string> Notices() const;

    // ---- activity -------------------------------------------------------------------------------
    /// Called with a short text of what is being waited for ("member 12 of 40"); may stay unset.
    /// Set it before the run starts.
    std::function<void(const std::string&)> on_activity;
    void Activity(const std::string& text) const;

  private:
    const int login_attempts_;
    std::atomic<bool> cancelled_{false};
    mutable std::mutex mutex_;
    int refused_logins_ = 0;
    TarselResult last_failure_;
    bool may_other_ports_answer_ = true;
    std::map<std::string, std::string> findings_;
    BmcAccount account_;
    std::vector<SourceStatus> sources_;
    std::vector<std::string> notices_;
};

}  // namespace Vantix::VantixConnection
