#include "support/ssh_peer_posix.h"

#include <arpa/inet.h>
#include <libssh/libssh.h>
#include <libssh/server.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

namespace test_support {
namespace {

constexpr int kPatienceMs = 20000;

// The library would rather have callbacks; for one password the message is shorter.
std::string PasswordOf(ssh_message message) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    return ssh_message_auth_password(message);
#pragma GCC diagnostic pop
}

}  // namespace

SshPeer::SshPeer(SshPeerSetup setup) : setup_(std::move(setup)) {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        listen(listener_, 1) != 0 ||
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("no TCP port of the loopback address is free");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
}

SshPeer::~SshPeer() {
    shutdown(listener_, SHUT_RDWR);
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (client_ >= 0) shutdown(client_, SHUT_RDWR);
    }
    thread_.join();
    close(listener_);
}

std::vector<std::string> SshPeer::Answers() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return given_;
}

std::vector<std::string> SshPeer::Passwords() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return passwords_;
}

void SshPeer::Serve() {
    pollfd watched{listener_, POLLIN, 0};
    if (poll(&watched, 1, kPatienceMs) <= 0) return;
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        client_ = client;
    }
    ssh_bind server = ssh_bind_new();
    ssh_session session = ssh_new();
    ssh_bind_options_set(server, SSH_BIND_OPTIONS_HOSTKEY, setup_.host_key_file.c_str());
    const bool no_file = false;
    ssh_bind_options_set(server, SSH_BIND_OPTIONS_PROCESS_CONFIG, &no_file);
    if (ssh_bind_accept_fd(server, session, client) == SSH_OK &&
        ssh_handle_key_exchange(session) == SSH_OK) {
        Talk(session);
    }
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        client_ = -1;
    }
    ssh_disconnect(session);
    ssh_free(session);
    ssh_bind_free(server);
}

void SshPeer::Talk(void* pointer) {
    auto* session = static_cast<ssh_session>(pointer);
    int methods = 0;
    if (setup_.offers_keyboard) methods |= SSH_AUTH_METHOD_INTERACTIVE;
    if (setup_.offers_password) methods |= SSH_AUTH_METHOD_PASSWORD;
    ssh_set_auth_methods(session, methods);
    while (ssh_message message = ssh_message_get(session)) {
        const int kind = ssh_message_type(message);
        const int method = ssh_message_subtype(message);
        if (kind == SSH_REQUEST_AUTH && method == SSH_AUTH_METHOD_INTERACTIVE) {
            AnswerKeyboard(session, message);
        } else {
            if (kind == SSH_REQUEST_AUTH && method == SSH_AUTH_METHOD_PASSWORD) {
                const std::lock_guard<std::mutex> lock(mutex_);
                passwords_.push_back(PasswordOf(message));
            }
            ssh_message_auth_set_methods(message, methods);
            ssh_message_reply_default(message);
        }
        ssh_message_free(message);
    }
}

void SshPeer::Ask(void* message) const {
    std::vector<const char*> prompts;
    std::vector<char> shown;
    for (const auto& prompt : setup_.rounds[round_]) {
        prompts.push_back(prompt.text.c_str());
        shown.push_back(prompt.is_shown ? 1 : 0);
    }
    ssh_message_auth_interactive_request(
        static_cast<ssh_message>(message), "login", setup_.instruction.c_str(),
        static_cast<unsigned>(prompts.size()), prompts.data(), shown.data());
}

void SshPeer::AnswerKeyboard(void* pointer, void* message_pointer) {
    auto* session = static_cast<ssh_session>(pointer);
    auto* message = static_cast<ssh_message>(message_pointer);
    if (!ssh_message_auth_kbdint_is_response(message)) {
        round_ = 0;
        Ask(message);
        return;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    for (int i = 0; i < ssh_userauth_kbdint_getnanswers(session); ++i) {
        given_.emplace_back(ssh_userauth_kbdint_getanswer(session, static_cast<unsigned>(i)));
    }
    if (++round_ < setup_.rounds.size()) {
        Ask(message);
    } else if (given_ == setup_.answers) {
        ssh_message_auth_reply_success(message, 0);
    } else {
        ssh_message_reply_default(message);
    }
}

}  // namespace test_support
