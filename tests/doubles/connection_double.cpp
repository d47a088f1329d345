#include "platform/connection/connection.h"

#include "doubles/platform_double.h"

using doubles::PlatformDouble;

namespace Vantix::VantixConnection {

TarselResult GetRESTConnection(const ConnectOption& option, ConnectionInfo& connection) {
    return PlatformDouble::Current().GetRESTConnection(option, connection);
}

TarselResult GetRESTConnectionList(const ConnectOption& option, std::vector<ConnectionInfo>& list) {
    return PlatformDouble::Current().GetRESTConnectionList(option, list);
}

TarselResult FetchCIMConnectionList(const ConnectOption& option,
                                    std::vector<ConnectionInfo>& list) {
    return PlatformDouble::Current().FetchCIMConnectionList(option, list);
}

TarselResult FetchIPMIConnection(const ConnectOption& option, ConnectionInfo& connection) {
    return PlatformDouble::Current().FetchIPMIConnection(option, connection);
}

TarselResult FetchIPMIConnectionList(const ConnectOption& option,
                                     std::vector<ConnectionInfo>& list) {
    return PlatformDouble::Current().FetchIPMIConnectionList(option, list);
}

TarselResult FetchVeskHttpsConnection(const ConnectOption& option, ConnectionInfo& connection) {
    return PlatformDouble::Current().FetchVeskHttpsConnection(option, connection);
}

}  // namespace Vantix::VantixConnection
