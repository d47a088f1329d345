#include "platform/disk/nvme_identity.h"

#include <cstddef>

#include "transport/text/text_cleaning.h"

namespace Vantix::disk {

std::optional<NvmeIdentity> ReadIdentifyController(std::string_view data) {
    constexpr std::size_t kThroughRevision = 72;
    if (data.size() < kThroughRevision) return std::nullopt;
    NvmeIdentity identity;
    identity.serial = transport::CleanText(data.substr(4, 20));
    identity.model = transport::CleanText(data.substr(24, 40));
    identity.firmware = transport::CleanText(data.substr(64, 8));
    if (identity.model.empty() && identity.firmware.empty()) return std::nullopt;
    return identity;
}

}  // namespace Vantix::disk
