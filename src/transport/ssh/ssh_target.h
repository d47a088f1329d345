// Where an SSH server is, how to log in there, and how long to wait.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace Vantix::transport {

/// What to do with a server's key (RFC 4251, 4.1).
enum class SshHostKeyRule {
    kStrict,     ///< only keys that are known
    kAcceptNew,  ///< the key of an unknown server is stored; a changed one is refused
    kOff         ///< any key; a notice says so
};

struct SshLimits {
    using Duration = std::chrono::milliseconds;
    Duration connect{15000};         ///< name, TCP and key exchange together
    Duration authentication{30000};  ///< the whole login
    /// Without a single byte from the server, keep-alive answers included. A command that prints
    /// nothing for long is not idle as long as its server answers.
    Duration idle{120000};
    Duration keep_alive{15000};  ///< a quiet connection is asked for a sign of life that often
    Duration total{0};           ///< everything together, from Connect() on; 0: no limit
    Duration ending{5000};       ///< for ending what still runs at the server
};

struct SshTarget {
    std::string host;  ///< name, IPv4 or IPv6 address without brackets
    int port = 22;
    std::string user;      ///< empty: the name of the local user
    std::string password;  ///< empty: no password is tried
    /// A private key: no other key is offered. Empty: without a password the agent's and the user's
    /// usual keys are offered; with one only where the server takes no password.
    std::string key_file;
    std::string key_passphrase;
    SshHostKeyRule host_key = SshHostKeyRule::kStrict;
    std::string known_hosts_file;    ///< empty: the user's own
    bool is_legacy_allowed = false;  ///< also SHA-1 key exchange, host keys and MACs, CBC ciphers
    SshLimits limits;
    std::function<bool()> is_cancelled;  ///< asked several times a second; may stay unset
    /// False: the run may not try another login. Asked before each method; may stay unset.
    std::function<bool()> may_try_login;
    /// Told when the server refused the password (never for a refused key); may stay unset.
    std::function<void(const std::string& what)> login_refused;
};

}  // namespace Vantix::transport
