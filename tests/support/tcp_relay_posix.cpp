#include "support/tcp_relay_posix.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace test_support {
namespace {

constexpr int kLookAgainMs = 20;

sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int Dial(int port) {
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(port);
    if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
        return server;
    }
    close(server);
    return -1;
}

bool IsReadable(int descriptor) {
    pollfd watched{descriptor, POLLIN, 0};
    return poll(&watched, 1, 0) > 0;
}

}  // namespace

TcpRelay::TcpRelay(int server_port, std::size_t bytes, RelayFault fault, std::string greeting)
    : server_port_(server_port), fault_(fault), greeting_(std::move(greeting)), bytes_left_(bytes) {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof(address);
    if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
        listen(listener_, 8) != 0 ||
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("no TCP port of the loopback address is free");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
}

TcpRelay::~TcpRelay() {
    must_end_ = true;
    thread_.join();
    close(listener_);
}

void TcpRelay::Serve() {
    while (!must_end_) {
        pollfd watched{listener_, POLLIN, 0};
        if (poll(&watched, 1, kLookAgainMs) <= 0) continue;
        const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        const int server = server_port_ == 0 ? -1 : Dial(server_port_);
        if (client >= 0) send(client, greeting_.data(), greeting_.size(), MSG_NOSIGNAL);
        if (client >= 0) Relay(client, server);
        if (client >= 0) close(client);
        if (server >= 0) close(server);
    }
}

void TcpRelay::Relay(int client, int server) {
    while (!must_end_) {
        // poll passes over negative descriptors: the silent server.
        std::array<pollfd, 2> watched{{{client, POLLIN, 0}, {server, POLLIN, 0}}};
        const bool is_stalled = IsFaulty();
        if (is_stalled && fault_ == RelayFault::kCut) return;
        if (is_stalled || server < 0) {
            poll(nullptr, 0, kLookAgainMs);
            continue;
        }
        poll(watched.data(), watched.size(), kLookAgainMs);
        if (IsReadable(client) && !Forward(client, server, false)) return;
        if (IsReadable(server) && !Forward(server, client, true)) return;
    }
}

bool TcpRelay::Forward(int from, int to, bool is_from_server) {
    std::array<char, 16384> block{};
    // The fault may be set at any moment, also while bytes are on their way through here.
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::size_t room = is_from_server ? std::min(block.size(), bytes_left_) : block.size();
    if (room == 0) return true;
    const ssize_t count = recv(from, block.data(), room, 0);
    if (count <= 0) return false;
    if (is_from_server) bytes_left_ -= static_cast<std::size_t>(count);
    return send(to, block.data(), static_cast<std::size_t>(count), MSG_NOSIGNAL) == count;
}

void TcpRelay::FaultAfter(std::size_t more_bytes) {
    const std::lock_guard<std::mutex> lock(mutex_);
    bytes_left_ = more_bytes;
}

bool TcpRelay::IsFaulty() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return bytes_left_ == 0;
}

}  // namespace test_support
