// A real IPMI peer for tests: Debian's ipmi_sim with an enclosure module of invented data.
//
// It knows cipher suite 3 only and refuses nobody by privilege level; those cases need a stand-in
// for ipmitool instead.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "support/child_process_posix.h"
#include "support/fru_builder.h"
#include "support/temporary_folder.h"

namespace test_support {

inline constexpr const char* kIpmiUser = "operator";
inline constexpr const char* kIpmiPassword = "Fake-Pass-1234";

/// A power supply: FRU and locator record.
struct SimulatedSupply {
    std::string name;
    AFru::Bytes fru;
};

struct SimulatedModule {
    AFru::Bytes fru;
    std::vector<SimulatedSupply> supplies;
};

/// "Example DE200", serial number "EX DE 0001", with two power supplies.
SimulatedModule AModule();

class IpmiSimulator {
  public:
    /// Whether a machine can be put in front of the controller, too: its system interface on a TCP
    /// port of the loopback address, in the way that QEMU speaks.
    enum class SystemInterface { kNone, kSocket };

    /// Why tests cannot use it here (a missing package); empty when they can.
    static std::string Missing();

    /// Starts on a free UDP port of the loopback address and waits until it answers. Throws
    /// std::runtime_error with the simulator's words when it does not.
    explicit IpmiSimulator(const SimulatedModule& module = AModule(),
                           SystemInterface system_interface = SystemInterface::kNone);

    [[nodiscard]] int Port() const { return port_; }
    [[nodiscard]] int SystemPort() const { return system_port_; }  ///< 0 without such an interface

  private:
    bool Start(const std::string& lan_file, const std::string& module_file);

    TemporaryFolder folder_;
    int port_ = 0;
    int system_port_ = 0;
    std::unique_ptr<ChildProcess> process_;
};

/// A UDP socket of the loopback address that takes everything and answers nothing.
class SilentUdpPort {
  public:
    SilentUdpPort();
    ~SilentUdpPort();
    SilentUdpPort(const SilentUdpPort&) = delete;
    SilentUdpPort& operator=(const SilentUdpPort&) = delete;
    [[nodiscard]] int Port() const { return port_; }

  private:
    int socket_ = -1;
    int port_ = 0;
};

}  // namespace test_support
