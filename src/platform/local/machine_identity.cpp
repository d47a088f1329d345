#include "platform/local/machine_identity.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <vector>

#include "platform/local/smbios_tables.h"
#include "platform/log/log.h"
#include "platform/redfish/text_rules.h"
#include "transport/smbios/smbios_records.h"

namespace Vantix::local {

using transport::SmbiosStructures;
using transport::SystemRoot;

namespace {

constexpr const char* kMachineIdentityLog = "machine_identity";
constexpr const char* kAttributes = "/sys/class/dmi/id/";
// The second is a link to the first, which recorded trees may lack.
constexpr const char* kDeviceTrees[] = {"/sys/firmware/devicetree/base/", "/proc/device-tree/"};

/// One fact: its attribute file, and where it is in the table when the kernel has no such file.
struct Fact {
    const char* attribute;
    std::string (*in_table)(const SmbiosStructures& structures);
};

constexpr Fact kProductName = {"product_name", [](const SmbiosStructures& structures) {
                                   return transport::ReadSmbiosSystem(structures).product_name;
                               }};
constexpr Fact kProductSku = {"product_sku", [](const SmbiosStructures& structures) {
                                  return transport::ReadSmbiosSystem(structures).sku_number;
                              }};
constexpr Fact kBoardName = {"board_name", [](const SmbiosStructures& structures) {
                                 return transport::ReadSmbiosBaseboard(structures).product;
                             }};
constexpr Fact kProductSerial = {"product_serial", [](const SmbiosStructures& structures) {
                                     return transport::ReadSmbiosSystem(structures).serial_number;
                                 }};
constexpr Fact kBoardSerial = {"board_serial", [](const SmbiosStructures& structures) {
                                   return transport::ReadSmbiosBaseboard(structures).serial_number;
                               }};
constexpr Fact kBiosVersion = {"bios_version", [](const SmbiosStructures& structures) {
                                   return transport::ReadSmbiosBios(structures).version;
                               }};

std::string KnownOrLogged(const std::string& value, const std::string& path) {
    if (value.empty() || !redfish::IsPlaceholder(value)) return value;
    Log(4, kMachineIdentityLog, __LINE__).Stream() << path << " is a placeholder: " << value;
    return {};
}

// The table is only asked for what the kernel has no file for: a file that is forbidden is
// forbidden there too.
std::string Read(const SystemRoot& root, const Fact& fact) {
    const std::string path = std::string(kAttributes) + fact.attribute;
    if (root.Exists(path)) return KnownOrLogged(root.ReadText(path), path);
    return KnownOrLogged(fact.in_table(ReadSmbios(root)), path);
}

// Later facts are not even read where an earlier one is known.
std::string FirstKnown(const SystemRoot& root, std::initializer_list<Fact> facts) {
    for (const Fact& fact : facts) {
        std::string value = Read(root, fact);
        if (!value.empty()) return value;
    }
    return {};
}

std::string ReadDeviceTree(const SystemRoot& root, const char* property) {
    for (const char* folder : kDeviceTrees) {
        const std::string path = std::string(folder) + property;
        std::string value = KnownOrLogged(root.ReadText(path), path);
        if (!value.empty()) return value;
    }
    return {};
}

bool HasDeviceTree(const SystemRoot& root) {
    return std::any_of(std::begin(kDeviceTrees), std::end(kDeviceTrees), [&](const char* folder) {
        return root.Exists(std::string(folder) + "model");
    });
}

bool IsDenied(const SystemRoot& root) {
    const std::vector<std::string> denied = root.DeniedPaths();
    return std::any_of(denied.begin(), denied.end(), [](const std::string& path) {
        return path.find("/dmi/") != std::string::npos;
    });
}

}  // namespace

MachineIdentity ReadMachineIdentity(const SystemRoot& root) {
    if (HasSmbios(root)) {
        return {FirstKnown(root, {kProductName, kProductSku, kBoardName}),
                FirstKnown(root, {kProductSerial, kBoardSerial}), true};
    }
    return {ReadDeviceTree(root, "model"), ReadDeviceTree(root, "serial-number"),
            HasDeviceTree(root)};
}

std::string ReadFirmwareVersion(const SystemRoot& root) {
    if (HasSmbios(root)) return Read(root, kBiosVersion);
    return ReadDeviceTree(root, "chosen/u-boot,version");
}

std::string WhyUnknown(const SystemRoot& root, const std::string& what) {
    const std::string start = "The " + what + " of this machine is not known: ";
    if (!HasSmbios(root) && !HasDeviceTree(root)) {
        return start +
               "it has neither SMBIOS nor a device tree, as is usual for containers and small "
               "virtual machines; scan the physical machine instead.";
    }
    if (IsDenied(root)) return start + "only root may read it; run the scan as root.";
    return start + "its firmware does not tell it.";
}

}  // namespace Vantix::local
