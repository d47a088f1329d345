// The detail records that scans leave of the identities they report.
#pragma once

#include <vector>

#include "platform/identities/software_identity.h"

namespace service::detail {

inline constexpr char kAgentlessIdentityHeading[] = "[Agentless Software Identity Information]";

/// One record at level 4 an identity: the heading, a line end, and the dump of the identity.
void LogIdentities(const char* heading,
                   const std::vector<Vantix::VantixOptions::SoftwareIdentity_>& identities);

}  // namespace service::detail
