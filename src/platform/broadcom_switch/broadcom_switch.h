// Are there updatable devices behind Broadcom PCIe switches?
#pragma once

#include "platform/connection/connection.h"

namespace Vantix {

class RedfishBroadComSwitch {
  public:
    explicit RedfishBroadComSwitch(const VantixConnection::ConnectionInfo& connection);
    /// True when the service shows a PCIe switch of vendor 0x1000 with downstream devices that its
    /// inventory can update; false on any error.
    bool ExistUpdateableBroadcomSwitchDownStream();

  private:
    VantixConnection::ConnectionInfo connection_;
};

}  // namespace Vantix
