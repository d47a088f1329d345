// What an NVMe controller tells of itself. Pure: bytes in, values out.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Vantix::disk {

/// Texts are clean; the firmware is the one that runs.
struct NvmeIdentity {
    std::string serial, model, firmware;
};

/// Identify Controller data (NVM Express Base Specification 2.0, figure 275): serial number in
/// bytes 4 to 23, model 24 to 63, firmware revision 64 to 71. Nothing when they are cut before the
/// end of the revision or name neither model nor revision.
[[nodiscard]] std::optional<NvmeIdentity> ReadIdentifyController(std::string_view data);

}  // namespace Vantix::disk
