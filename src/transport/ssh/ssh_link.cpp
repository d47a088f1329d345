#include "transport/ssh/ssh_link.h"

#include <libssh/callbacks.h>
#include <libssh/server.h>

#include <algorithm>

#include "transport/ssh/tcp_dial.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kSlice(50);
// Room for both offers of algorithms; a server that hangs up may say anything.
constexpr std::size_t kLongestWords = 3000;

// What old management modules and switches know comes behind today's algorithms, on explicit wish
// only. libssh takes whole lists; names it does not know are passed over.
constexpr const char* kLegacyKeyExchanges =
    "curve25519-sha256,curve25519-sha256@libssh.org,ecdh-sha2-nistp256,ecdh-sha2-nistp384,"
    "ecdh-sha2-nistp521,diffie-hellman-group18-sha512,diffie-hellman-group16-sha512,"
    "diffie-hellman-group-exchange-sha256,diffie-hellman-group14-sha256,"
    "diffie-hellman-group-exchange-sha1,diffie-hellman-group14-sha1,diffie-hellman-group1-sha1";
constexpr const char* kLegacyKeys =
    "ssh-ed25519,ecdsa-sha2-nistp521,ecdsa-sha2-nistp384,ecdsa-sha2-nistp256,rsa-sha2-512,"
    "rsa-sha2-256,ssh-rsa,ssh-dss";
constexpr const char* kLegacyCiphers =
    "chacha20-poly1305@openssh.com,aes256-gcm@openssh.com,aes128-gcm@openssh.com,aes256-ctr,"
    "aes192-ctr,aes128-ctr,aes256-cbc,aes192-cbc,aes128-cbc,3des-cbc";
constexpr const char* kLegacyMacs =
    "hmac-sha2-256-etm@openssh.com,hmac-sha2-512-etm@openssh.com,hmac-sha2-256,hmac-sha2-512,"
    "hmac-sha1-etm@openssh.com,hmac-sha1";

bool Set(ssh_session session, ssh_options_e option, const std::string& value) {
    return ssh_options_set(session, option, value.c_str()) == SSH_OK;
}

// Weak keys are refused by size, too; old devices have RSA keys of 1024 bits.
bool AllowLegacy(ssh_session session) {
    constexpr int kSmallestOldKey = 1024;
    if (ssh_options_set(session, SSH_OPTIONS_RSA_MIN_SIZE, &kSmallestOldKey) != SSH_OK) {
        return false;
    }
    return Set(session, SSH_OPTIONS_KEY_EXCHANGE, kLegacyKeyExchanges) &&
           Set(session, SSH_OPTIONS_HOSTKEYS, kLegacyKeys) &&
           Set(session, SSH_OPTIONS_PUBLICKEY_ACCEPTED_TYPES, kLegacyKeys) &&
           Set(session, SSH_OPTIONS_CIPHERS_C_S, kLegacyCiphers) &&
           Set(session, SSH_OPTIONS_CIPHERS_S_C, kLegacyCiphers) &&
           Set(session, SSH_OPTIONS_HMAC_C_S, kLegacyMacs) &&
           Set(session, SSH_OPTIONS_HMAC_S_C, kLegacyMacs);
}

}  // namespace

// libssh leaves a socket open that it was given, except where it closed it because of an error.
void SshLink::SessionEnd::operator()(ssh_session session) const {
    const NativeSocket socket = ssh_get_fd(session);
    ssh_disconnect(session);
    ssh_free(session);
    if (socket != SSH_INVALID_SOCKET) CloseSocket(socket);
}

SshLink::SshLink(const SshTarget& target) : target_(target), session_(ssh_new()) {}

SshLink::~SshLink() {
    // The session must leave before the event goes.
    if (event_) ssh_event_remove_session(event_.get(), session_.get());
}

std::string SshLink::Place() const {
    return CleanText(target_.host) + " port " + std::to_string(target_.port);
}

std::string SshLink::LastWords() const {
    return CleanStart(ssh_get_error(session_.get()), kLongestWords);
}

bool SshLink::IsConnected() const {
    return session_ != nullptr && ssh_is_connected(session_.get()) != 0;
}

// No file of the user is read but the ones that the target names: neither configuration nor the
// machine's known hosts.
bool SshLink::SetOptions() {
    const ssh_session session = session_.get();
    if (session == nullptr) return false;
    const bool reads_configuration = false;
    const int port = target_.port;
    bool is_good =
        Set(session, SSH_OPTIONS_HOST, target_.host) &&
        ssh_options_set(session, SSH_OPTIONS_PORT, &port) == SSH_OK &&
        ssh_options_set(session, SSH_OPTIONS_PROCESS_CONFIG, &reads_configuration) == SSH_OK &&
        Set(session, SSH_OPTIONS_GLOBAL_KNOWNHOSTS, "/dev/null");
    if (!target_.user.empty()) is_good = is_good && Set(session, SSH_OPTIONS_USER, target_.user);
    if (!target_.known_hosts_file.empty()) {
        is_good = is_good && Set(session, SSH_OPTIONS_KNOWNHOSTS, target_.known_hosts_file);
    }
    if (target_.is_legacy_allowed) is_good = is_good && AllowLegacy(session);
    return is_good;
}

SshFailure SshLink::Open() {
    const Time now = StepLimit::Clock::now();
    if (target_.limits.total.count() > 0) total_end_ = now + target_.limits.total;
    if (!SetOptions()) {
        return {SshProblem::kProtocol,
                "the SSH library does not take the address or user name of " + Place() + ": " +
                    LastWords()};
    }
    const StepLimit limit = StepLimit::In(target_.limits.connect, SshProblem::kTimedOut,
                                          Place() + " did not answer within the limit");
    if (auto failure = Dial(limit)) return failure;
    return ExchangeKeys(limit);
}

SshFailure SshLink::Dial(const StepLimit& limit) {
    StepLimit dial_limit = limit;
    dial_limit.until = std::min(limit.until, total_end_);
    // The dialler knows the limit itself and says what it was waiting for.
    const Dialed dialed =
        DialTcp(target_.host, target_.port, dial_limit, [this] { return MustStop(StepLimit{}); });
    if (dialed.failure) return dialed.failure;
    ssh_options_set(session_.get(), SSH_OPTIONS_FD, &dialed.socket);
    ssh_set_blocking(session_.get(), 0);
    ssh_set_counters(session_.get(), &counter_, nullptr);
    last_byte_ = last_question_ = StepLimit::Clock::now();
    return {};
}

SshFailure SshLink::ExchangeKeys(const StepLimit& limit) {
    int outcome = SSH_AGAIN;
    const auto failure = Repeat(
        limit, SSH_AGAIN, [this] { return ssh_connect(session_.get()); }, outcome);
    if (failure && failure.problem != SshProblem::kConnectionLost) return failure;
    if (!failure && outcome == SSH_OK) return {};
    const std::string words = LastWords();
    if (words.find("no match for method") != std::string::npos) {
        return {SshProblem::kNoCommonAlgorithm,
                "no algorithm in common with " + Place() + ": " + words};
    }
    return {SshProblem::kProtocol, Place() + " answers, but no SSH session came about: " + words};
}

SshFailure SshLink::Failed(SshProblem problem, const std::string& what) const {
    if (IsConnected()) return {problem, Place() + " " + what + ": " + LastWords()};
    const std::string words = LastWords();
    return {SshProblem::kConnectionLost,
            "the connection to " + Place() + " was cut" + (words.empty() ? "" : ": " + words)};
}

SshFailure SshLink::MustStop(const StepLimit& limit) const {
    const Time now = StepLimit::Clock::now();
    if (!limit.is_last_act) {
        if (target_.is_cancelled && target_.is_cancelled()) {
            return {SshProblem::kCancelled, "interrupted"};
        }
        if (now >= total_end_) {
            return {SshProblem::kDeadline, "the time for " + Place() + " is used up"};
        }
    }
    if (now >= limit.until) return limit.on_expiry;
    return {};
}

void SshLink::Attach() {
    event_.reset(ssh_event_new());
    if (event_ && ssh_event_add_session(event_.get(), session_.get()) != SSH_OK) event_.reset();
}

SshFailure SshLink::Pump(const StepLimit& limit) {
    if (auto stop = MustStop(limit)) return stop;
    if (!IsConnected()) return Failed(SshProblem::kConnectionLost, "");
    if (!event_) Attach();
    if (!event_) return {SshProblem::kProtocol, "the SSH library cannot wait: " + LastWords()};
    ssh_event_dopoll(event_.get(), static_cast<int>(kSlice.count()));
    return WatchLife();
}

SshFailure SshLink::WatchLife() {
    const Time now = StepLimit::Clock::now();
    if (counter_.in_bytes != bytes_seen_) {
        bytes_seen_ = counter_.in_bytes;
        last_byte_ = now;
        return {};
    }
    const SshLimits& limits = target_.limits;
    if (limits.idle.count() > 0 && now - last_byte_ >= limits.idle) {
        return {SshProblem::kTimedOut, "no sign of life from " + Place() + " within the limit"};
    }
    const Time last = std::max(last_byte_, last_question_);
    if (is_kept_alive_ && limits.keep_alive.count() > 0 && now - last >= limits.keep_alive) {
        last_question_ = now;
        ssh_send_keepalive(session_.get());
    }
    return {};
}

SshFailure SshLink::Repeat(const StepLimit& limit, int again, const std::function<int()>& step,
                           int& outcome) {
    while ((outcome = step()) == again) {
        if (auto failure = Pump(limit)) return failure;
    }
    return {};
}

}  // namespace Vantix::transport
