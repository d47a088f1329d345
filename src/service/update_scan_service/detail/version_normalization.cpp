#include "service/update_scan_service/detail/version_normalization.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace service::detail {
namespace {

using Vantix::VantixOptions::SoftwareIdentity_;

struct VersionPrefix {
    std::string_view software_id;
    std::string_view prefix;
};

constexpr VersionPrefix kCfcPrefixes[] = {
    {"FPGA", "CPLD-"}, {"UEFI", "Bios-"}, {"BMC", "ActiveBMC-"}, {"BMC-Backup", "BackupBMC-"}};

constexpr VersionPrefix kCspPrefixes[] = {{"UEFI", "BIOSImage1-"},
                                          {"UEFI-Backup", "BIOSImage2-"},
                                          {"BMC", "BMCImage1-"},
                                          {"BMC-Backup", "BMCImage2-"}};

bool RemovePrefix(std::string& text, std::string_view prefix) {
    if (!text.starts_with(prefix)) return false;
    text.erase(0, prefix.size());
    return true;
}

template <std::size_t kCount>
void RemovePrefixOf(const std::string& software_id, const VersionPrefix (&prefixes)[kCount],
                    std::string& version) {
    for (const VersionPrefix& candidate : prefixes) {
        if (candidate.software_id == software_id) {
            RemovePrefix(version, candidate.prefix);
            return;
        }
    }
}

std::string TrimmedCopy(std::string_view text) {
    constexpr std::string_view kSpace = " \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(kSpace) - first + 1));
}

}  // namespace

void NormalizeCfcVersion(SoftwareIdentity_& identity) {
    std::string& version = identity.VersionString;
    if (!RemovePrefix(version, identity.SoftwareID + "-")) {
        RemovePrefixOf(identity.SoftwareID, kCfcPrefixes, version);
    }
    if (identity.SoftwareID != "UEFI") return;
    if (const std::size_t remark = version.find('('); remark != std::string::npos) {
        version = TrimmedCopy(std::string_view(version).substr(0, remark));
    }
}

void NormalizeCspVersion(SoftwareIdentity_& identity) {
    RemovePrefixOf(identity.SoftwareID, kCspPrefixes, identity.VersionString);
    if (identity.SoftwareID == "UEFI" && identity.Name == "UEFI") identity.Name = "BIOSImage1";
    if (identity.InstanceID.starts_with("FPGAImage")) {
        identity.Name = identity.SoftwareID;
        identity.Classifications = "FPGA";
    }
}

void NormalizeVersions(std::vector<SoftwareIdentity_>& identities, bool is_cfc_system,
                       bool is_csp_system) {
    if (is_cfc_system) {
        for (SoftwareIdentity_& identity : identities) NormalizeCfcVersion(identity);
    }
    if (is_csp_system) {
        for (SoftwareIdentity_& identity : identities) NormalizeCspVersion(identity);
    }
}

}  // namespace service::detail
