#include "service/update_scan_service/detail/bmc_type.h"

#include "platform/bmc_type/bmc_type.h"
#include "platform/log/log.h"
#include "service/update_scan_service/detail/scan_trace.h"

namespace service::detail {

bool AcquireBmcType(const Vantix::VantixConnection::ConnectionInfo& connection,
                    std::string& bmc_type) {
    int type = 0;
    const int code = Vantix::Agentless::OssaTypeAcquire(connection).GetOssaType(type);
    if (code != 0 || type == 0) {
        Vantix::Log(2, kScanLogSource, __LINE__).Stream()
            << "Failed to acquire BMC type with error is " << code;
        return false;
    }
    bmc_type = Vantix::Agentless::OssaTypeAcquire::OssaTypeToString(type);
    return true;
}

}  // namespace service::detail
