#include "platform/redfish/completion_reader.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;
using VantixOptions::SoftwareIdentity_;

struct KindTexts {
    const char* resource;
    const char* description;
};

KindTexts TextsOf(DeviceKind kind) {
    switch (kind) {
        case DeviceKind::kNetworkAdapter:
            return {"Redfish NetworkAdapter", "Network adapter"};
        case DeviceKind::kStorageController:
            return {"Redfish StorageController", "Storage controller"};
        case DeviceKind::kDrive:
            return {"Redfish Drive", "Drive firmware"};
        case DeviceKind::kPowerSupply:
            return {"Redfish PowerSupply", "Power supply"};
        case DeviceKind::kPcieDevice:
            return {"Redfish PCIeDevice", "PCIe device"};
        case DeviceKind::kMemory:
            break;
    }
    return {"Redfish Memory", "Memory module"};
}

std::string AllTexts(const SoftwareIdentity_& identity) {
    return Lower(identity.Name + "\n" + identity.Description + "\n" + identity.SoftwareID + "\n" +
                 identity.InstanceID);
}

bool SpeaksOf(DeviceKind kind, const SoftwareIdentity_& identity) {
    const std::string texts = AllTexts(identity);
    const auto words = Words(texts);
    switch (kind) {
        case DeviceKind::kNetworkAdapter:
            return HasAnyWord(words, {"nic", "nics", "network", "ethernet", "adapter", "infiniband",
                                      "hca", "hba", "lom", "cna", "ocp"});
        case DeviceKind::kStorageController:
            return HasAnyWord(words, {"raid", "storage", "controller", "hba", "sas"});
        case DeviceKind::kDrive:
            return HasAnyWord(words, {"drive", "disk", "ssd", "hdd", "nvme"});
        case DeviceKind::kPowerSupply:
            return HasAnyWord(words, {"psu"}) || texts.find("power suppl") != std::string::npos ||
                   texts.find("powersuppl") != std::string::npos;
        default:
            return false;
    }
}

bool Names(const Device& device, const SoftwareIdentity_& identity) {
    constexpr std::size_t kShortestName = 4;
    const std::string texts = AllTexts(identity);
    const std::string name = Lower(identity.Name);
    for (const std::string& own : {device.model, device.name, device.part_number}) {
        const std::string lower = Lower(own);
        if (lower.size() < kShortestName) continue;
        if (texts.find(lower) != std::string::npos) return true;
        if (name.size() >= kShortestName && lower.find(name) != std::string::npos) return true;
    }
    return false;
}

bool IsDistinctive(const std::string& version) {
    constexpr std::string_view kSeparators = ".-_ ";
    const auto count = std::count_if(version.begin(), version.end(), [&](char c) {
        return kSeparators.find(c) != std::string_view::npos;
    });
    return version.size() >= 6 && count >= 2;
}

bool IsCardSlot(const Slot& slot) {
    return slot.IsKnown() &&
           (slot.type == kSlotPcie || slot.type == kSlotPci || slot.type == kSlotOcp);
}

bool IsCard(DeviceKind kind) {
    return kind == DeviceKind::kNetworkAdapter || kind == DeviceKind::kStorageController ||
           kind == DeviceKind::kPcieDevice;
}

/// What is listed so far; grows with every device that is looked at.
class Listed {
  public:
    Listed(const DeviceIndex& index, const FirmwareReading& reading) : index_(index) {
        for (const FirmwareEntry& entry : reading.entries) {
            for (const Device* device : entry.devices) Cover(*device);
            const Slot slot{entry.identity.AssociatedAdapterSlot, entry.identity.SlotType};
            if (IsCardSlot(slot)) slots_.insert({slot.type, slot.number});
            if (entry.devices.empty()) loose_.push_back({&entry.identity, {}});
        }
    }

    /// Not const: an entry that stands for this device stands for no further one of its kind.
    bool Covers(const Device& device) {
        const std::vector<const Device*> same = index_.SameHardware(device);
        if (IsCovered(device) || std::any_of(same.begin(), same.end(), [&](const Device* other) {
                return IsCovered(*other);
            })) {
            return true;
        }
        return ClaimLooseEntry(device);
    }

    void Cover(const Device& device) {
        paths_.insert(transport::FoldLink(device.path));
        paths_.insert(device.same_hardware.begin(), device.same_hardware.end());
        if (!device.serial_number.empty()) serials_.insert(device.serial_number);
        if (IsCard(device.kind) && IsCardSlot(device.slot)) {
            slots_.insert({device.slot.type, device.slot.number});
        }
    }

  private:
    struct LooseEntry {
        const SoftwareIdentity_* identity;
        std::set<DeviceKind> claimed;
    };

    bool IsCovered(const Device& device) const {
        if (paths_.count(transport::FoldLink(device.path)) > 0) return true;
        if (serials_.count(device.serial_number) > 0) return true;
        return IsCard(device.kind) && IsCardSlot(device.slot) &&
               slots_.count({device.slot.type, device.slot.number}) > 0;
    }

    bool ClaimLooseEntry(const Device& device) {
        for (LooseEntry& entry : loose_) {
            const SoftwareIdentity_& identity = *entry.identity;
            if (identity.VersionString != device.firmware_version) continue;
            const bool fits = Names(device, identity) || SpeaksOf(device.kind, identity) ||
                              IsDistinctive(device.firmware_version);
            if (fits && entry.claimed.insert(device.kind).second) return true;
        }
        return false;
    }

    const DeviceIndex& index_;
    std::set<std::string> paths_;  ///< folded
    std::set<std::string> serials_;
    std::set<std::pair<std::int32_t, std::string>> slots_;
    std::vector<LooseEntry> loose_;
};

SoftwareIdentity_ MakeIdentity(const Device& device) {
    const KindTexts texts = TextsOf(device.kind);
    SoftwareIdentity_ identity;
    identity.Name = FirstOf({device.model, device.name, device.id});
    identity.ElementName = identity.Name;
    identity.Description = texts.description;
    identity.Caption = texts.resource;
    identity.Manufacturer = device.manufacturer;
    identity.VersionString = device.firmware_version;
    identity.SoftwareID = FirstOf({device.part_number, device.model, device.id});
    identity.InstanceID = device.id;
    identity.Classifications = "10";
    identity.AssociatedAdapterSlot = device.slot.number;
    identity.SlotType = device.slot.type;
    identity.SerialNumber = device.serial_number;
    identity.PartNumber = device.part_number;
    return identity;
}

bool RelatesTo(const FirmwareEntry& entry, const std::string& path) {
    return std::any_of(
        entry.related_paths.begin(), entry.related_paths.end(),
        [&](const std::string& related) { return transport::IsSameLink(related, path); });
}

bool HasSystemBios(const ManagedSystem& managed, const FirmwareReading& reading) {
    return std::any_of(
        reading.entries.begin(), reading.entries.end(), [&](const FirmwareEntry& entry) {
            // With a device it is the option ROM of a card.
            return (entry.identity.Classifications == "6" && entry.devices.empty()) ||
                   entry.identity.VersionString == managed.bios_version;
        });
}

bool HasBmc(const ManagedSystem& managed, const FirmwareReading& reading) {
    return std::any_of(reading.entries.begin(), reading.entries.end(),
                       [&](const FirmwareEntry& entry) {
                           return RelatesTo(entry, managed.manager->path) ||
                                  HasAnyWord(Words(AllTexts(entry.identity)), {"bmc"}) ||
                                  entry.identity.VersionString == managed.manager_version;
                       });
}

SoftwareIdentity_ MakeSystemIdentity(const char* software_id, const char* name, const char* source,
                                     const Resource& resource, const std::string& version) {
    SoftwareIdentity_ identity;
    identity.SoftwareID = software_id;
    identity.Name = name;
    identity.ElementName = name;
    identity.Description = name;
    identity.Caption = source;
    identity.VersionString = version;
    identity.InstanceID = IdOf(resource);
    identity.Manufacturer = Known(json::Text(resource.body, "Manufacturer"));
    return identity;
}

void AppendSystemFirmware(const ManagedSystem& managed, const FirmwareReading& reading,
                          std::vector<SoftwareIdentity_>& list) {
    if (managed.system != nullptr && !IsNoVersion(managed.bios_version) &&
        !HasSystemBios(managed, reading)) {
        list.push_back(MakeSystemIdentity("UEFI", "System BIOS", "Redfish ComputerSystem",
                                          *managed.system, managed.bios_version));
        list.back().Classifications = "6";
    }
    if (managed.manager != nullptr && !IsNoVersion(managed.manager_version) &&
        !HasBmc(managed, reading)) {
        list.push_back(MakeSystemIdentity("BMC", "BMC Firmware", "Redfish Manager",
                                          *managed.manager, managed.manager_version));
        list.back().Classifications = "10";
    }
}

}  // namespace

std::vector<SoftwareIdentity_> ReadMissingFirmware(const ManagedSystem& managed,
                                                   const DeviceIndex& index,
                                                   const FirmwareReading& reading) {
    std::vector<SoftwareIdentity_> list;
    AppendSystemFirmware(managed, reading, list);
    Listed listed(index, reading);
    for (const Device& device : index.Devices()) {
        const bool counts = device.kind != DeviceKind::kMemory && !device.is_absent &&
                            !device.is_superseded && !IsNoVersion(device.firmware_version);
        if (!counts) continue;
        if (!listed.Covers(device)) list.push_back(MakeIdentity(device));
        // Its other views come later in the index and are the same hardware.
        listed.Cover(device);
    }
    return list;
}

}  // namespace Vantix::redfish
