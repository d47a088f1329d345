// Where the CIM service of a target is, and what kind of target it belongs to.
#pragma once

#include <string>

#include "platform/connection/connection.h"

namespace Vantix::cim {

enum class CimTargetKind { kBmc, kChassis, kHypervisor };

/// By the connection mode: everything that is no chassis module, switch or hypervisor is a BMC.
[[nodiscard]] CimTargetKind TargetKindOf(const VantixConnection::ConnectOption& option);

/// `cim_port`; else, of a target that is reached over CIM only, `port`; else 5989, or 5988 for
/// plain HTTP.
[[nodiscard]] int CimPortOf(const VantixConnection::ConnectOption& option);

/// The port of the target's web service: `port` where it is not the CIM port, else 443.
[[nodiscard]] int WebPortOf(const VantixConnection::ConnectOption& option);

/// Host and CIM port as they stand in a URL and in messages, for example "[::1]:5989".
[[nodiscard]] std::string CimTargetOf(const VantixConnection::ConnectOption& option);

}  // namespace Vantix::cim
