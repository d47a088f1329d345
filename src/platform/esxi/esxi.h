// What is particular to an ESXi host: its version, and its CIM service.
#pragma once

#include "platform/connection/connection.h"

namespace Vantix {
namespace Agentless {

class EXSIInventory {  // kept spelling
  public:
    explicit EXSIInventory(const VantixConnection::ConnectionInfo& connection);
    bool IsUnSpportedEXSIVersion();  // kept spelling

  private:
    VantixConnection::ConnectionInfo connection_;
};

}  // namespace Agentless
}  // namespace Vantix

class CIMServerConfig {
  public:
    explicit CIMServerConfig(const Vantix::VantixConnection::ConnectionInfo& connection);
    /// 0 when the host's CIM service answers and is allowed; changes nothing on the host.
    int PrevConfig();

  private:
    Vantix::VantixConnection::ConnectionInfo connection_;
};
