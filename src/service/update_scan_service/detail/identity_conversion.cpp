#include "service/update_scan_service/detail/identity_conversion.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <string>

namespace service::detail {
namespace {

using Vantix::VantixOptions::SoftwareIdentity_;

// Kept in upper case, so that only the identifier in question has to be converted.
constexpr std::array<std::string_view, 27> kAgentlessComponents = {
    "OSSA",  "OSSA-BACKUP",  "OSSA2", "OSSA2-BACKUP",   "UEFI",  "UEFI-BACKUP", "DIAGNOSTICS",
    "TAVRO", "TAVRO-BACKUP", "PYX",   "RUSK",           "KOFAR", "KOFEX",       "QOVA",
    "YEM",   "SWITCHES",     "VESK3", "VESK3-INACTIVE", "VESK",  "TOLV",        "BMC/H8",
    "BMC",   "BMC-BACKUP",   "CPLD",  "FPGA",           "ZIBE",  "HOLM"};

// The C library's conversions follow the locale and are undefined for negative characters.
char AsciiUpper(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

std::string AsciiUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char letter) { return AsciiUpper(letter); });
    return upper;
}

}  // namespace

bool IsAgentlessComponent(std::string_view software_id) {
    const std::string id = AsciiUpper(software_id);
    if (std::find(kAgentlessComponents.begin(), kAgentlessComponents.end(), id) !=
        kAgentlessComponents.end()) {
        return true;
    }
    return id.starts_with("FPGA-IHFS") || id.starts_with("FPGA-IHFG") || id.starts_with("HOLM-") ||
           id.ends_with("_CPLD");
}

void DumpSoftwareIdentity(std::ostream& out, const SoftwareIdentity_& identity) {
    out << "Name:           \t" << identity.Name << '\n'
        << "Description:    \t" << identity.Description << '\n'
        << "Element Name:   \t" << identity.ElementName << '\n'
        << "Version String: \t" << identity.VersionString << '\n';
}

}  // namespace service::detail
