#include "platform/disk/scsi_rules.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/redfish/text_rules.h"

namespace Vantix::disk {
namespace {

struct Reach {
    std::string_view mark;  ///< how a folder on the way to the device begins
    const char* reason;
};

constexpr Reach kReaches[] = {
    {"session", "on a network (iSCSI)"},
    {"rport-", "on a network (Fibre Channel)"},
    {"usb", "on USB"},
    {"virtio", "a hypervisor's disk"},
    {"VMBUS", "a hypervisor's disk"},
};

bool HasNumberBehind(std::string_view folder, std::string_view mark) {
    if (folder.substr(0, mark.size()) != mark) return false;
    const std::string_view rest = folder.substr(mark.size());
    return rest.find_first_of("0123456789") != std::string_view::npos;
}

std::string ReachReason(std::string_view path) {
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view folder = path.substr(0, slash);
        for (const Reach& reach : kReaches) {
            if (HasNumberBehind(folder, reach.mark)) return reach.reason;
        }
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
    }
    return {};
}

bool EndsWithWord(std::string_view text, std::string_view word) {
    return text.size() > word.size() && text.substr(text.size() - word.size()) == word &&
           text[text.size() - word.size() - 1] == ' ';
}

bool IsCalledVolume(const std::string& model) {
    return redfish::HasAnyWord(redfish::Words(model),
                               {"raid", "logical", "volume", "array", "lun"}) ||
           EndsWithWord(model, "VD");
}

bool IsVolume(const ScsiClues& clues) {
    constexpr int kExtendedName = 6;
    const std::string level = redfish::Lower(clues.raid_level);
    const bool has_level = !level.empty() && level != "n/a";
    const bool has_extended_name = std::find(clues.naa_formats.begin(), clues.naa_formats.end(),
                                             kExtendedName) != clues.naa_formats.end() ||
                                   clues.wwid.rfind("naa.6", 0) == 0;
    return has_level || clues.is_raid_device || has_extended_name || IsCalledVolume(clues.model);
}

bool IsDiskType(const std::string& type) {
    return type.empty() || type == "0" || type == "20";
}

}  // namespace

std::string WhyNoDisk(const ScsiClues& clues) {
    if (!IsDiskType(clues.device_type)) return "device type " + clues.device_type;
    const std::string reach = ReachReason(clues.device_path);
    if (!reach.empty()) return reach;
    if (redfish::HasAnyWord(redfish::Words(clues.model), {"virtual"})) return "a virtual disk";
    return IsVolume(clues) ? "a logical volume" : "";
}

}  // namespace Vantix::disk
