#include "platform/pci/firmware_attributes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace Vantix::pci {
namespace {

using transport::SystemRoot;
using Names = std::vector<std::string>;

// What drivers of storage adapters call it, from most to least used.
constexpr std::array<const char*, 8> kScsiHostAttributes = {
    "version_fw", "firmware_version", "firmware_revision", "fw_version",
    "fwrev",      "host_fw_version",  "beiscsi_fw_ver",    "hba_kernel_version"};
constexpr std::array<const char*, 3> kOwnAttributes = {"fw_version", "firmware_version",
                                                       "vbios_version"};
constexpr std::size_t kMostInstances = 16;  ///< controllers, hosts or interfaces of one device

bool Has(const Names& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsNumbered(std::string_view name, std::string_view prefix) {
    return name.size() > prefix.size() && name.substr(0, prefix.size()) == prefix &&
           name.find_first_not_of("0123456789", prefix.size()) == std::string_view::npos;
}

std::string ReadVersion(const SystemRoot& root, const std::string& path) {
    std::string text = root.ReadText(path);
    return StandsForNoVersion(text) ? std::string() : text;
}

// <path>/<folder>/*/<attribute>
std::string FromChildren(const SystemRoot& root, const std::string& path, const Names& names,
                         const char* folder, const char* attribute) {
    if (!Has(names, folder)) return {};
    Names children = root.List(path + "/" + folder);
    children.resize(std::min(children.size(), kMostInstances));
    for (const std::string& child : children) {
        std::string version =
            ReadVersion(root, path + "/" + folder + "/" + child + "/" + attribute);
        if (!version.empty()) return version;
    }
    return {};
}

std::string FromScsiHost(const SystemRoot& root, const std::string& path, const std::string& host) {
    const std::string folder = path + "/" + host + "/scsi_host/" + host;
    const Names there = root.List(folder);
    for (const char* attribute : kScsiHostAttributes) {
        if (!Has(there, attribute)) continue;
        std::string version = ReadVersion(root, folder + "/" + attribute);
        if (!version.empty()) return version;
    }
    return ReadVersion(root, path + "/" + host + "/fc_host/" + host + "/firmware_version");
}

std::string FromNumberedChildren(const SystemRoot& root, const std::string& path,
                                 const Names& names) {
    std::size_t count = 0;
    for (const std::string& name : names) {
        const bool is_host = IsNumbered(name, "host");
        if (!is_host && !IsNumbered(name, "mem")) continue;
        if (++count > kMostInstances) break;
        std::string version = is_host ? FromScsiHost(root, path, name)
                                      : ReadVersion(root, path + "/" + name + "/firmware_version");
        if (!version.empty()) return version;
    }
    return {};
}

std::string FromOwn(const SystemRoot& root, const std::string& path, const Names& names) {
    for (const char* attribute : kOwnAttributes) {
        if (!Has(names, attribute)) continue;
        std::string version = ReadVersion(root, path + "/" + attribute);
        if (!version.empty()) return version;
    }
    return {};
}

std::string FromInterfaces(const SystemRoot& root, const std::string& path, const Names& names,
                           const NetFirmwareQuery& net_firmware) {
    if (!net_firmware || !Has(names, "net")) return {};
    Names interfaces = root.List(path + "/net");
    interfaces.resize(std::min(interfaces.size(), kMostInstances));
    for (const std::string& interface : interfaces) {
        std::string version = net_firmware(interface);
        if (!StandsForNoVersion(version)) return version;
    }
    return {};
}

}  // namespace

bool StandsForNoVersion(const std::string& text) {
    constexpr std::array<std::string_view, 6> kWords = {"n/a",  "na",      "none",
                                                        "null", "unknown", "not available"};
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
    });
    return lower.find_first_not_of("0.-_ ") == std::string::npos ||
           std::find(kWords.begin(), kWords.end(), lower) != kWords.end();
}

std::string FirmwareVersionFromKernel(const SystemRoot& root, const std::string& path,
                                      const Names& names, const NetFirmwareQuery& net_firmware) {
    std::string version = FromChildren(root, path, names, "nvme", "firmware_rev");
    if (version.empty()) version = FromChildren(root, path, names, "infiniband", "fw_ver");
    if (version.empty()) version = FromNumberedChildren(root, path, names);
    if (version.empty()) version = FromOwn(root, path, names);
    if (version.empty()) version = FromInterfaces(root, path, names, net_firmware);
    return version;
}

}  // namespace Vantix::pci
