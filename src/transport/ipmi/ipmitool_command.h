// How ipmitool is called: one run is one session with a BMC, with several commands in it.
//
// Pure: makes the command, does not run it. The password stands in a passed text and nowhere else.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "transport/process/command_runner.h"

namespace Vantix::transport {

/// Lengths in bytes: the protocol's limits (IPMI v2.0, RAKP and Set User Password).
inline constexpr std::size_t kLongestIpmiPassword = 20;
inline constexpr std::size_t kLongestIpmiUser = 16;
inline constexpr int kIpmiPort = 623;

struct IpmiTarget {
    std::string host;  ///< empty: this machine's own BMC, through the system interface
    int port = kIpmiPort;
    std::string user;
    std::string password;
};

/// What may differ from one try to the next.
struct IpmiTry {
    int cipher = 17;
    std::string privilege;  ///< empty: ipmitool's default, the administrator's
};

/// One raw request. `data` without network function and command.
struct RawRequest {
    std::uint8_t network_function = 0;
    std::uint8_t command = 0;
    std::vector<std::uint8_t> data;
};

/// True when ipmitool would not cut or misread the password: at most 20 bytes, no TAB, CR, LF, NUL.
[[nodiscard]] bool IsUsableIpmiPassword(const std::string& password);

/// "raw 0x06 0x01 0x00": one line for the session's script.
[[nodiscard]] std::string RawLine(const RawRequest& request);

/// The run of `program` that opens one session and carries out `lines` in their order. Marks the
/// answer to each line, see SplitAnswers. Time limit and cancelling are left to the caller.
[[nodiscard]] Command IpmiToolCommand(const std::string& program, const IpmiTarget& target,
                                      const IpmiTry& attempt,
                                      const std::vector<std::string>& lines);

/// The line that stands in the output before the answer to line `index` (and, at last, after all).
[[nodiscard]] std::string AnswerMark(std::size_t index);

}  // namespace Vantix::transport
