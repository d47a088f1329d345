// An SSH server whose login conversation the test writes, on libssh's server side. It knows nothing
// but logins: for commands and files there is sshd_posix.h.
#pragma once

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace test_support {

struct PeerPrompt {
    std::string text;
    bool is_shown = false;
};

struct SshPeerSetup {
    std::string host_key_file;  ///< private key
    bool offers_keyboard = true;
    bool offers_password = false;
    /// The questions of keyboard-interactive, round by round.
    std::vector<std::vector<PeerPrompt>> rounds;
    std::string instruction;  ///< above each round
    /// The answers that let the user in, in their order; the password is the first one.
    std::vector<std::string> answers;
};

/// Serves one connection on a free port of the loopback address.
class SshPeer {
  public:
    explicit SshPeer(SshPeerSetup setup);
    ~SshPeer();
    SshPeer(const SshPeer&) = delete;
    SshPeer& operator=(const SshPeer&) = delete;

    [[nodiscard]] int Port() const { return port_; }
    /// Everything that was answered to a prompt so far.
    [[nodiscard]] std::vector<std::string> Answers() const;
    /// Passwords that came by the method "password".
    [[nodiscard]] std::vector<std::string> Passwords() const;

  private:
    void Serve();
    void Talk(void* session);
    void AnswerKeyboard(void* session, void* message);
    void Ask(void* message) const;

    const SshPeerSetup setup_;
    int listener_ = -1;
    int client_ = -1;
    int port_ = 0;
    std::size_t round_ = 0;
    mutable std::mutex mutex_;
    std::vector<std::string> given_;
    std::vector<std::string> passwords_;
    std::thread thread_;
};

}  // namespace test_support
