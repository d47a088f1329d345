// A real SSH server for tests: Debian's sshd as a private daemon on a free loopback port, with host
// keys, a user key and an invented account of its own. No account of the system is touched.
//
// It has no PAM and therefore no keyboard-interactive; ssh_peer_posix.h has.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/child_process_posix.h"
#include "support/temporary_folder.h"

namespace test_support {

inline constexpr const char* kSshUser = "tester";
inline constexpr const char* kSshPassword = "Fake-Pass-1234";

struct SshdSetup {
    bool takes_password = true;
    bool takes_key = true;
    bool has_sftp = true;
    bool is_password_expired = false;
    bool has_rsa_key = false;  ///< beside the ed25519 one
    std::string shell = "/bin/sh";
    std::vector<std::string> more_lines;  ///< of sshd_config; the first one of a kind counts
};

class Sshd {
  public:
    /// Why tests cannot use it here (a missing package); empty when they can.
    static std::string Missing();

    /// Starts and waits until it listens. Throws std::runtime_error with its words when it does
    /// not.
    explicit Sshd(const SshdSetup& setup = {});

    [[nodiscard]] int Port() const { return port_; }
    /// Private keys: the account's own, and one that the server does not know.
    [[nodiscard]] std::string KeyFile() const { return folder_.Path("id"); }
    [[nodiscard]] std::string StrangeKeyFile() const { return strange_.Path("id"); }
    /// The line of a known-hosts file for this server, with its line end.
    [[nodiscard]] std::string KnownHostsLine(int port = 0) const;
    [[nodiscard]] std::string HostKeyFile() const { return folder_.Path("hostkey"); }
    /// The account's home folder, which it may write to.
    [[nodiscard]] std::string Home() const { return folder_.Path("home"); }
    /// What it has logged so far.
    [[nodiscard]] std::string Log() const { return TemporaryFolder::ReadFile(LogFile()); }
    /// How often the text stands in the log, after waiting until it stands there once.
    [[nodiscard]] int CountInLog(const std::string& text) const;
    /// Gives a file in the home folder to the account.
    void GiveToAccount(const std::string& path) const;
    void Stop() { process_.reset(); }

  private:
    [[nodiscard]] std::string LogFile() const { return folder_.Path("log"); }
    [[nodiscard]] bool WaitForLog(const std::string& text) const;
    bool Start(const SshdSetup& setup);
    void WriteAccount(const SshdSetup& setup) const;
    [[nodiscard]] std::map<std::string, std::string> Wrapper() const;
    [[nodiscard]] std::string Configuration(const SshdSetup& setup) const;

    TemporaryFolder folder_;
    TemporaryFolder strange_;
    int port_ = 0;
    std::unique_ptr<ChildProcess> process_;
};

/// Makes a key pair without passphrase (or with one); the public half gets ".pub".
void MakeSshKey(const std::string& path, const std::string& type = "ed25519",
                const std::string& passphrase = "");

/// A TCP port of the loopback address that was free a moment ago.
int FreeTcpPort();

}  // namespace test_support
