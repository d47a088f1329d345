#include "platform/pci/net_firmware.h"

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <string_view>

#include "transport/text/text_cleaning.h"

namespace Vantix::pci {
namespace {

class ControlSocket {
  public:
    ControlSocket() : handle_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
    ~ControlSocket() {
        if (handle_ >= 0) ::close(handle_);
    }
    ControlSocket(const ControlSocket&) = delete;
    ControlSocket& operator=(const ControlSocket&) = delete;

    [[nodiscard]] std::string FirmwareOf(const std::string& interface) const {
        if (handle_ < 0 || interface.empty() || interface.size() >= IFNAMSIZ) return {};
        ethtool_drvinfo answer = {};
        answer.cmd = ETHTOOL_GDRVINFO;
        ifreq request = {};
        std::memcpy(request.ifr_name, interface.data(), interface.size());
        request.ifr_data = reinterpret_cast<char*>(&answer);
        if (::ioctl(handle_, SIOCETHTOOL, &request) != 0) return {};
        return transport::CleanText({answer.fw_version, sizeof(answer.fw_version)});
    }

  private:
    int handle_;
};

}  // namespace

NetFirmwareQuery ThisMachinesNetFirmware() {
    const auto socket = std::make_shared<const ControlSocket>();
    return [socket](const std::string& interface) { return socket->FirmwareOf(interface); };
}

}  // namespace Vantix::pci
