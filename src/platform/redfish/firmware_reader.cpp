#include "platform/redfish/firmware_reader.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "platform/redfish/classification.h"
#include "platform/redfish/installed_rules.h"
#include "platform/redfish/managed_system.h"
#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;
using boost::json::object;
using VantixOptions::SoftwareIdentity_;

enum class ImageRole { kUnknown, kActive, kBackup };

std::string RoleText(ImageRole role) {
    if (role == ImageRole::kUnknown) return {};
    return role == ImageRole::kActive ? "Active" : "Backup";
}

std::vector<std::string> RelatedPaths(const object& body) {
    std::vector<std::string> paths;
    std::vector<std::string> links = json::Links(body, "RelatedItem");
    if (const object* parents = json::Object(body, "Links")) {
        const std::vector<std::string> more = json::Links(*parents, "RelatedItem");
        links.insert(links.end(), more.begin(), more.end());
    }
    for (const std::string& link : links) {
        const transport::LinkReference target = transport::SplitLink(link);
        paths.push_back(target.path + (target.pointer.empty() ? "" : "#" + target.pointer));
    }
    return paths;
}

std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts) joined += (joined.empty() ? "" : " ") + text;
    return joined;
}

/// Where the entry itself says its device is; the kind matters for the label's reading.
Slot ContextSlot(const object& body) {
    const object* oem = json::Object(body, "Oem");
    if (oem == nullptr) return {};
    const auto words = Words(json::Text(body, "Name") + " " + json::Text(body, "Description"));
    DeviceKind kind = DeviceKind::kPcieDevice;
    if (HasAnyWord(words, {"psu"}) || ContainsIgnoringCase(Joined(words), "power suppl")) {
        kind = DeviceKind::kPowerSupply;
    } else if (HasAnyWord(words, {"drive", "disk", "ssd", "hdd"})) {
        kind = DeviceKind::kDrive;
    }
    for (const auto& maker : *oem) {
        const object* fields = maker.value().if_object();
        if (fields == nullptr) continue;
        const Slot slot = SlotOfLabel(json::Text(*fields, "DeviceContext"), kind);
        if (slot.IsKnown()) return slot;
    }
    return {};
}

void FillFromDevices(const object& body, FirmwareEntry& entry) {
    SoftwareIdentity_& identity = entry.identity;
    Slot slot;
    for (const Device* device : entry.devices) {
        if (identity.SerialNumber.empty()) identity.SerialNumber = device->serial_number;
        if (identity.PartNumber.empty()) identity.PartNumber = device->part_number;
        if (identity.Manufacturer.empty()) identity.Manufacturer = device->manufacturer;
        if (!slot.IsKnown()) slot = device->slot;
    }
    if (!slot.IsKnown()) slot = ContextSlot(body);
    identity.AssociatedAdapterSlot = slot.number;
    identity.SlotType = slot.type;
}

std::string SoftwareIdOf(const Resource& member) {
    const std::string id = json::Text(member.body, "SoftwareId");
    return id.empty() || id == "0" ? IdOf(member) : id;
}

void Classify(const Resource& member, bool is_firmware_inventory, FirmwareEntry& entry) {
    ClassificationEvidence evidence;
    evidence.id = json::Text(member.body, "Id");
    evidence.name = entry.identity.Name;
    evidence.software_id = json::Text(member.body, "SoftwareId");
    evidence.description = entry.identity.Description;
    evidence.related_paths = entry.related_paths;
    evidence.is_in_firmware_inventory = is_firmware_inventory;
    evidence.has_related_hardware = !entry.devices.empty();
    entry.identity.Classifications = ClassificationOf(evidence);
}

std::string FlagText(const object& body, const char* key) {
    const std::optional<bool> flag = json::OptionalBool(body, key);
    return !flag ? "" : *flag ? "1" : "0";
}

FirmwareEntry MakeEntry(const Resource& member, const DeviceIndex& index) {
    FirmwareEntry entry;
    SoftwareIdentity_& identity = entry.identity;
    const object& body = member.body;
    identity.Name = json::Text(body, "Name");
    identity.ElementName = identity.Name;
    identity.Description = json::Text(body, "Description");
    identity.Manufacturer = json::Text(body, "Manufacturer");
    identity.VersionString = json::Text(body, "Version");
    identity.ReleaseDate = json::Text(body, "ReleaseDate");
    identity.SoftwareID = SoftwareIdOf(member);
    identity.InstanceID = IdOf(member);
    identity.SoftwareStatus = json::TextAt(body, {"Status", "State"});
    identity.IsPLDMUpdateSupported = FlagText(body, "Updateable");
    entry.related_paths = RelatedPaths(body);
    identity.IdentityInfoValue = Joined(entry.related_paths);
    if (!entry.related_paths.empty()) identity.IdentityInfoType = "RelatedItem";
    for (const std::string& path : entry.related_paths) {
        const Device* device = index.Find(path);
        if (device != nullptr) entry.devices.push_back(device);
    }
    FillFromDevices(body, entry);
    return entry;
}

/// Reads the members of both inventories one by one.
class Reader {
  public:
    Reader(const ServerSnapshot& snapshot, const DeviceIndex& index)
        : snapshot_(snapshot), index_(index) {
        ReadImageRoles();
        for (const Resource& member : snapshot.firmware) ReadInstalledId(member);
    }

    FirmwareReading Read() {
        for (const Resource& member : snapshot_.firmware) ReadMember(member, true);
        const bool is_only_inventory = reading_.entries.empty();
        for (const Resource& member : snapshot_.software) ReadMember(member, false);
        if (is_only_inventory) Reclassify();
        MarkBackups();
        return std::move(reading_);
    }

  private:
    void ReadImageRoles();
    void ReadInstalledId(const Resource& member);
    void ReadMember(const Resource& member, bool is_firmware_inventory);
    bool IsInstalledTwice(const Resource& member) const;
    bool IsKnownFirmware(const SoftwareIdentity_& identity) const;
    void Reclassify();
    void MarkBackups();
    ImageRole RoleOf(const Resource& member, const FirmwareEntry& entry) const;

    const ServerSnapshot& snapshot_;
    const DeviceIndex& index_;
    FirmwareReading reading_;
    std::vector<const Resource*> members_;  ///< of reading_.entries, one to one
    std::set<std::string> seen_paths_;
    std::set<std::string> installed_ids_;           ///< Ids behind "Installed-"
    std::map<std::string, ImageRole> image_roles_;  ///< folded path -> what the manager says
};

void Reader::ReadImageRoles() {
    for (const Resource& manager : snapshot_.managers) {
        const object* links = json::Object(manager.body, "Links");
        const std::string active =
            links == nullptr ? "" : json::Link(*links, "ActiveSoftwareImage");
        if (active.empty()) continue;
        for (const std::string& image : json::Links(*links, "SoftwareImages")) {
            image_roles_[transport::FoldLink(transport::LinkPath(image))] = ImageRole::kBackup;
        }
        image_roles_[transport::FoldLink(transport::LinkPath(active))] = ImageRole::kActive;
    }
}

void Reader::ReadInstalledId(const Resource& member) {
    bool is_current = false;
    const std::string rest = IdBehindPrefix(IdOf(member), is_current);
    if (!rest.empty() && !is_current) installed_ids_.insert(rest);
}

bool Reader::IsInstalledTwice(const Resource& member) const {
    bool is_current = false;
    const std::string rest = IdBehindPrefix(IdOf(member), is_current);
    return is_current && installed_ids_.count(rest) > 0;
}

/// A software inventory may repeat what the firmware inventory has.
bool Reader::IsKnownFirmware(const SoftwareIdentity_& identity) const {
    return std::any_of(reading_.entries.begin(), reading_.entries.end(),
                       [&](const FirmwareEntry& entry) {
                           return entry.identity.InstanceID == identity.InstanceID &&
                                  entry.identity.SoftwareID == identity.SoftwareID &&
                                  entry.identity.VersionString == identity.VersionString;
                       });
}

void Reader::ReadMember(const Resource& member, bool is_firmware_inventory) {
    if (!seen_paths_.insert(transport::LinkPath(member.path)).second) return;
    if (member.body.empty() || IsErrorDocument(member.body)) {
        reading_.issues.push_back({member.path, "no resource but an error document"});
        return;
    }
    const InstallState state = InstallStateOf(member.body);
    if (state != InstallState::kInstalled) {
        reading_.not_installed.push_back({member.path, InstallStateText(state)});
        return;
    }
    FirmwareEntry entry = MakeEntry(member, index_);
    const bool is_repeated =
        is_firmware_inventory ? IsInstalledTwice(member) : IsKnownFirmware(entry.identity);
    if (is_repeated) {
        reading_.not_installed.push_back({member.path, "listed under another entry too"});
        return;
    }
    entry.identity.Caption =
        is_firmware_inventory ? "Redfish FirmwareInventory" : "Redfish SoftwareInventory";
    entry.identity.SoftwareRole = RoleText(RoleOf(member, entry));
    Classify(member, is_firmware_inventory, entry);
    if (IsNoVersion(entry.identity.VersionString)) ++reading_.without_version;
    reading_.entries.push_back(std::move(entry));
    members_.push_back(&member);
}

void Reader::Reclassify() {
    for (std::size_t i = 0; i < members_.size(); ++i) {
        Classify(*members_[i], true, reading_.entries[i]);
    }
}

ImageRole Reader::RoleOf(const Resource& member, const FirmwareEntry& entry) const {
    const auto role = image_roles_.find(transport::FoldLink(transport::LinkPath(member.path)));
    if (role != image_roles_.end()) return role->second;
    // A standby disk is no backup image of another disk.
    const bool is_backup = entry.devices.empty() && CallsItselfBackup(member.body);
    return is_backup ? ImageRole::kBackup : ImageRole::kUnknown;
}

void Reader::MarkBackups() {
    std::set<std::string> primary_ids;
    for (const FirmwareEntry& entry : reading_.entries) {
        if (entry.identity.SoftwareRole != "Backup") primary_ids.insert(entry.identity.SoftwareID);
    }
    for (FirmwareEntry& entry : reading_.entries) {
        SoftwareIdentity_& identity = entry.identity;
        const bool shares_id = primary_ids.count(identity.SoftwareID) > 0;
        if (identity.SoftwareRole == "Backup" && shares_id) identity.SoftwareID += "-Backup";
    }
}

}  // namespace

FirmwareReading ReadFirmware(const ServerSnapshot& snapshot, const DeviceIndex& index) {
    return Reader(snapshot, index).Read();
}

}  // namespace Vantix::redfish
