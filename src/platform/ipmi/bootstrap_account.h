// The account of the Redfish service that a BMC gives to the machine it sits in, asked for through
// the kernel's IPMI device.
//
// The password is a secret of the log from the moment it is known, and stands in no argument, file
// or environment.
#pragma once

#include <string>

#include "platform/connection/connection.h"
#include "transport/http/http_transport.h"
#include "transport/process/command_runner.h"

namespace Vantix::ipmi {

/// Fills `account` with a new account; each call makes the BMC create one more, so that a run
/// should ask once. KCS_CONNECT_FAILED when the device or ipmitool is missing, may not be used, or
/// the BMC refuses; code 47 interrupted. The message says which and what to do. The device is
/// looked for below `root_folder`.
[[nodiscard]] TarselResult GetBootstrapAccount(const VantixConnection::ConnectOption& option,
                                               transport::CommandRunner& runner,
                                               transport::Clock& clock,
                                               VantixConnection::BmcAccount& account,
                                               const std::string& root_folder = "/");

}  // namespace Vantix::ipmi
