#include "platform/ipmi/local_ipmi.h"

#include "transport/ipmi/ipmi_provider_windows.h"
#include "transport/ipmi/raw_ipmi_runner.h"

namespace Vantix::ipmi {

transport::CommandRunner& SystemIpmiRunner() {
    static transport::RawIpmiRunner runner(transport::OpenIpmiProvider,
                                           transport::SystemCommandRunner());
    return runner;
}

bool ShowsIpmiDeviceAsNode() {
    return false;
}

const char* LocalIpmiAdvice() {
    return "run the scan as administrator with the Microsoft IPMI driver enabled or ipmitool "
           "installed";
}

}  // namespace Vantix::ipmi
