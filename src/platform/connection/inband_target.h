// Where this machine's own BMC is and with which account it is talked to, for the modes that scan
// the machine they run on.
//
// All other modes, and what the user gave, are left as they are.
#pragma once

#include "platform/connection/connection.h"

namespace Vantix::VantixConnection {

/// True for the modes that reach the BMC of the machine they run on.
[[nodiscard]] bool IsInband(const ConnectOption& option);

/// In-band without an address: fills it in, with the port where none was given, from the machine's
/// Redfish host interface (SMBIOS type 42). CONNECTION_FAILED when there is none that tells.
[[nodiscard]] TarselResult FillInbandAddress(ConnectOption& option);

/// In-band without a user: fills in the account that the BMC gives to its own machine, one a run.
/// KCS_CONNECT_FAILED when it gives none.
[[nodiscard]] TarselResult FillInbandAccount(ConnectOption& option);

}  // namespace Vantix::VantixConnection
