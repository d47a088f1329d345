#include "platform/local/smbios_tables.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "platform/local/firmware_table.h"
#include "transport/smbios/smbios_entry_point.h"
#include "transport/smbios/smbios_records.h"

namespace Vantix::local {

using transport::SmbiosStructure;
using transport::SmbiosStructures;
using transport::SystemRoot;

namespace {

constexpr const char* kTable = "/sys/firmware/dmi/tables/DMI";
constexpr const char* kEntryPoint = "/sys/firmware/dmi/tables/smbios_entry_point";
constexpr const char* kEntries = "/sys/firmware/dmi/entries";
constexpr const char* kAttributes = "/sys/class/dmi/id";
// Tables are a few KiB; on the largest machines some hundred.
constexpr std::size_t kMostTableBytes = 4 * 1024 * 1024;

constexpr std::array kWanted = {transport::kSmbiosBios,         transport::kSmbiosSystem,
                                transport::kSmbiosBaseboard,    transport::kSmbiosSlot,
                                transport::kSmbiosMemoryDevice, transport::kSmbiosHostInterface};

bool IsWanted(int type) {
    return std::find(kWanted.begin(), kWanted.end(), type) != kWanted.end();
}

// Entries are named by type and instance: "9-0".
bool IsWantedEntry(std::string_view name) {
    int type = -1;
    const auto end = std::from_chars(name.data(), name.data() + name.size(), type).ptr;
    return end != name.data() + name.size() && *end == '-' && IsWanted(type);
}

SmbiosStructures ReadEntries(const SystemRoot& root) {
    SmbiosStructures structures;
    for (const std::string& name : root.List(kEntries)) {
        if (!IsWantedEntry(name)) continue;
        const std::string path = std::string(kEntries) + "/" + name + "/raw";
        const std::optional<std::string> bytes = root.ReadBytes(path);
        // One forbidden entry is as good as all of them: they have the same rights.
        if (!bytes && root.Exists(path)) break;
        if (!bytes) continue;
        SmbiosStructures entry = transport::ReadSmbiosTable(*bytes, 1);
        std::move(entry.begin(), entry.end(), std::back_inserter(structures));
    }
    return structures;
}

SmbiosStructures WantedOf(SmbiosStructures structures) {
    structures.erase(
        std::remove_if(structures.begin(), structures.end(),
                       [](const SmbiosStructure& structure) { return !IsWanted(structure.type); }),
        structures.end());
    return structures;
}

}  // namespace

SmbiosStructures ReadSmbios(const SystemRoot& root) {
    if (root.IsThisMachine()) {
        if (const auto running = RunningFirmwareTable()) {
            return WantedOf(transport::ReadSmbiosTable(*running));
        }
    }
    if (!root.Exists(kTable)) return WantedOf(ReadEntries(root));
    const std::optional<std::string> table = root.ReadBytes(kTable, kMostTableBytes);
    if (!table) return {};
    const std::string entry_point = root.ReadBytes(kEntryPoint).value_or("");
    return WantedOf(transport::ReadSmbiosTable(*table, std::string_view(entry_point)));
}

bool HasSmbios(const SystemRoot& root) {
    return (root.IsThisMachine() && RunningFirmwareTable()) || root.Exists(kAttributes) ||
           root.Exists(kTable) || root.Exists(kEntries);
}

}  // namespace Vantix::local
