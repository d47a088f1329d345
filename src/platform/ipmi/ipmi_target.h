// Where the IPMI service of a target is: address, port, account, and the text of it.
#pragma once

#include <string>

#include "platform/connection/connection.h"
#include "transport/ipmi/ipmitool_command.h"

namespace Vantix::ipmi {

/// The port to use: the given one, else 623.
int IpmiPortOf(const VantixConnection::ConnectOption& option);

transport::IpmiTarget IpmiTargetOf(const VantixConnection::ConnectOption& option);

/// True when this machine has a device node for its own BMC below `root_folder`, or is of a system
/// without such nodes, and the scan may use it: not where the run reads a recorded tree instead of
/// this machine.
bool HasLocalIpmiDevice(const VantixConnection::ConnectOption& option,
                        const std::string& root_folder = "/");

/// As it stands in messages: "[::1]:623", or "this machine's BMC".
std::string IpmiTargetText(const VantixConnection::ConnectOption& option);

/// Under which a run remembers that nobody answers there.
std::string IpmiSilenceKey(const VantixConnection::ConnectOption& option);

}  // namespace Vantix::ipmi
