// Carries out ipmitool's local sessions without ipmitool, over a system's own IPMI driver.
//
// Stands in the place of the program: takes its command and answers in its words, so that the rest
// of this system knows one way of asking. Sessions over the network stay the program's.
#pragma once

#include "transport/ipmi/raw_ipmi.h"
#include "transport/process/command_runner.h"

namespace Vantix::transport {

class RawIpmiRunner : public CommandRunner {
  public:
    /// `tool` runs programs and must outlive the object.
    RawIpmiRunner(RawIpmiOpener open, CommandRunner& tool);

    /// A command of IpmiToolCommand. For this machine's BMC the lines "raw", "echo" and "sdr elist
    /// fru" of its script are answered by the driver; where that cannot be opened the program runs,
    /// with the interface that it takes of itself, because those have other names here, and the
    /// cause stands before what it says of errors. Neither is there: the outcome of a program that
    /// finds no device, with the cause in its words. A driver that does not answer within the
    /// command's time limit ends the session as timed out.
    [[nodiscard]] CommandOutcome Run(const Command& command) override;

  private:
    [[nodiscard]] CommandOutcome RunTool(const Command& command, const std::string& cause);

    RawIpmiOpener open_;
    CommandRunner& tool_;
};

}  // namespace Vantix::transport
