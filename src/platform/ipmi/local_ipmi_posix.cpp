#include "platform/ipmi/local_ipmi.h"

namespace Vantix::ipmi {

transport::CommandRunner& SystemIpmiRunner() {
    return transport::SystemCommandRunner();
}

bool ShowsIpmiDeviceAsNode() {
    return true;
}

const char* LocalIpmiAdvice() {
    return "run the scan as root with the drivers ipmi_si and ipmi_devintf loaded";
}

}  // namespace Vantix::ipmi
