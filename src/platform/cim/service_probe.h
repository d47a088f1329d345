// Why nobody answered at the CIM port: asks the target's other ports, without a login.
#pragma once

#include <string>

#include "common/result/tarsel_result.h"
#include "platform/connection/connection.h"
#include "transport/cim_xml/cim_answer.h"
#include "transport/http/curl_transport.h"

namespace Vantix::cim {

/// How the service at `port` is reached; everything but the port is the user's wish.
[[nodiscard]] transport::CurlSettings CurlSettingsFor(const VantixConnection::ConnectOption& option,
                                                      int port, bool use_tls);

/// A better result than `result` for a CIM port that could not be connected to, or `result`: code
/// 55 for a BMC that serves its other ports; for a hypervisor that does, code 66 with the way to
/// its CIM service, or ESXI_INTERNAL_ERROR when its release has none.
[[nodiscard]] TarselResult ExplainRefusal(const VantixConnection::ConnectOption& option,
                                          const transport::CimFailure& failure,
                                          const TarselResult& result);

/// The sentences that ExplainRefusal() uses; `target` is host and CIM port.
[[nodiscard]] TarselResult ClosedCimOfBmc(const std::string& target, int open_port);
[[nodiscard]] TarselResult ClosedCimOfHypervisor(const std::string& target, int open_port,
                                                 const std::string& version);

}  // namespace Vantix::cim
