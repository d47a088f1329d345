// Bytes between a client and a server of the loopback address, until something happens to them.
#pragma once

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace test_support {

enum class RelayFault {
    kStall,  ///< the connection stays open and nothing moves any more
    kCut     ///< closed at both sides
};

/// Relays one connection at a time to the port of a server. A relay to port 0 accepts, says its
/// greeting and then never a word.
class TcpRelay {
  public:
    /// The fault happens once the server has sent that many bytes.
    explicit TcpRelay(int server_port, std::size_t bytes = static_cast<std::size_t>(-1),
                      RelayFault fault = RelayFault::kStall, std::string greeting = "");
    ~TcpRelay();
    TcpRelay(const TcpRelay&) = delete;
    TcpRelay& operator=(const TcpRelay&) = delete;

    [[nodiscard]] int Port() const { return port_; }
    /// Lets that many more bytes pass before the fault.
    void FaultAfter(std::size_t more_bytes);

  private:
    void Serve();
    void Relay(int client, int server);
    bool IsFaulty();
    bool Forward(int from, int to, bool is_from_server);

    const int server_port_;
    const RelayFault fault_;
    const std::string greeting_;
    std::mutex mutex_;
    std::size_t bytes_left_;
    std::atomic<bool> must_end_{false};
    int listener_ = -1;
    int port_ = 0;
    std::thread thread_;
};

}  // namespace test_support
