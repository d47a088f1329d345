// What a hypervisor tells of itself: name, version, architecture. Pure.
#pragma once

#include <string>
#include <string_view>

#include "platform/cim/cim_snapshot.h"

namespace Vantix::cim {

/// The newest major release that ships a CIM service; later ones have none.
inline constexpr int kLastMajorReleaseWithCim = 8;

struct HypervisorFacts {
    std::string os;            ///< name and version, for example "VMware ESXi 8.0.2"
    std::string architecture;  ///< "x86_64" or "aarch64"
    std::string version;       ///< "8.0.2"; empty when it is not told
};

/// Of the hypervisor's operating system, not of a guest's. An empty `os` when none is shown.
[[nodiscard]] HypervisorFacts ReadHypervisor(const CimSnapshot& snapshot);

/// Whether a release of that version ships a CIM service; an unknown version is given the benefit
/// of the doubt.
[[nodiscard]] bool HasCimService(std::string_view version);

/// The product version in the answer of the host's web service to a request for its content;
/// empty when it is no such answer.
[[nodiscard]] std::string ReadProductVersion(std::string_view body);

}  // namespace Vantix::cim
