// What a failure to reach or use a CIM service means to the user: one code, one sentence.
#pragma once

#include <string>

#include "common/result/tarsel_result.h"
#include "platform/cim/cim_target.h"
#include "transport/cim_xml/cim_answer.h"

namespace Vantix::cim {

/// The one table from failures to results. `target` is host and port as the user would write them,
/// `user` the account that was used. The message says what failed, where, and what to do. A
/// success for no failure.
[[nodiscard]] TarselResult ResultOfCimFailure(const transport::CimFailure& failure,
                                              CimTargetKind kind, const std::string& target,
                                              const std::string& user);

/// Whether another service of the same target may well answer: its host was reached, or refused
/// this one port.
[[nodiscard]] bool MayOtherPortsAnswer(const transport::CimFailure& failure);

}  // namespace Vantix::cim
