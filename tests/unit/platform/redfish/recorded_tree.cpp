#include "recorded_tree.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;
namespace fs = std::filesystem;

std::string FileText(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// The child folder of that name, letter case exact first.
std::optional<fs::path> Child(const fs::path& folder, const std::string& name) {
    std::error_code ignored;
    if (fs::is_directory(folder / name, ignored)) return folder / name;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        const std::string candidate = entry.path().filename().string();
        if (transport::FoldLink(candidate) == transport::FoldLink(name)) return entry.path();
    }
    return std::nullopt;
}

/// Folders carry names as they are, links carry blanks percent-encoded.
std::string WithBlanks(std::string segment) {
    for (std::size_t at = segment.find("%20"); at != std::string::npos; at = segment.find("%20")) {
        segment.replace(at, 3, " ");
    }
    return segment;
}

std::string CellText(const std::string& cell) {
    boost::system::error_code error;
    const boost::json::value value = boost::json::parse(cell, error);
    return error ? std::string() : json::TextOf(value);
}

}  // namespace

std::optional<fs::path> RecordedSetsFolder() {
    const char* environment = std::getenv("TARSEL_SHARED_MOCKUPS");
    const fs::path folder = environment != nullptr ? environment : TARSEL_SHARED_MOCKUPS;
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored)) return std::nullopt;
    return folder;
}

std::optional<boost::json::object> RecordedTree::Load(const std::string& link) const {
    if (link.empty()) return std::nullopt;
    fs::path place = folder_;
    std::stringstream segments(transport::LinkPath(link).substr(1));
    for (std::string segment; std::getline(segments, segment, '/');) {
        const std::optional<fs::path> child = Child(place, WithBlanks(segment));
        if (!child) return std::nullopt;
        place = *child;
    }
    boost::system::error_code error;
    const boost::json::value body = boost::json::parse(FileText(place / "index.json"), error);
    if (error || !body.is_object()) return std::nullopt;
    return body.get_object();
}

std::vector<Resource> RecordedTree::Members(const std::string& collection) const {
    std::vector<Resource> members;
    const auto body = collection.empty() ? std::nullopt : Load(collection);
    if (!body) return members;
    for (const std::string& link : json::Links(*body, "Members")) {
        if (auto member = Load(link)) members.push_back({transport::LinkPath(link), *member});
    }
    return members;
}

void RecordedTree::Follow(const boost::json::object& holder, const char* key,
                          std::vector<Resource>& list) const {
    for (Resource& member : Members(json::Link(holder, key))) list.push_back(std::move(member));
    const boost::json::array* array = json::Array(holder, key);
    if (array == nullptr) return;
    for (const std::string& link : json::Links(holder, key)) {
        if (auto body = Load(link)) list.push_back({transport::LinkPath(link), *body});
    }
}

void RecordedTree::LoadSystem(const Resource& system, ServerSnapshot& snapshot) const {
    Follow(system.body, "Memory", snapshot.memory);
    Follow(system.body, "PCIeDevices", snapshot.pcie_devices);
    for (Resource& storage : Members(json::Link(system.body, "Storage"))) {
        Follow(storage.body, "Drives", snapshot.drives);
        Follow(storage.body, "Controllers", snapshot.storage);
        snapshot.storage.push_back(std::move(storage));
    }
}

void RecordedTree::LoadChassis(const Resource& chassis, ServerSnapshot& snapshot) const {
    Follow(chassis.body, "NetworkAdapters", snapshot.network_adapters);
    Follow(chassis.body, "PCIeDevices", snapshot.pcie_devices);
    Follow(chassis.body, "Drives", snapshot.drives);
    for (const char* key : {"Power", "PCIeSlots"}) {
        const std::string link = json::Link(chassis.body, key);
        auto body = link.empty() ? std::nullopt : Load(link);
        if (!body) continue;
        auto& list = std::string(key) == "Power" ? snapshot.power : snapshot.pcie_slots;
        list.push_back({transport::LinkPath(link), std::move(*body)});
    }
    const std::string power = json::Link(chassis.body, "PowerSubsystem");
    if (const auto body = power.empty() ? std::nullopt : Load(power)) {
        Follow(*body, "PowerSupplies", snapshot.power_supplies);
    }
}

ServerSnapshot RecordedTree::Snapshot() const {
    ServerSnapshot snapshot;
    snapshot.root = Load("/redfish/v1").value_or(boost::json::object());
    snapshot.systems = Members(json::Link(snapshot.root, "Systems"));
    snapshot.managers = Members(json::Link(snapshot.root, "Managers"));
    snapshot.chassis = Members(json::Link(snapshot.root, "Chassis"));
    const std::string update = json::Link(snapshot.root, "UpdateService");
    snapshot.update_service = Load(update).value_or(boost::json::object());
    snapshot.firmware = Members(json::Link(snapshot.update_service, "FirmwareInventory"));
    snapshot.software = Members(json::Link(snapshot.update_service, "SoftwareInventory"));
    snapshot.has_firmware_inventory = !snapshot.firmware.empty();
    for (const Resource& system : snapshot.systems) LoadSystem(system, snapshot);
    for (const Resource& chassis : snapshot.chassis) LoadChassis(chassis, snapshot);
    return snapshot;
}

std::vector<ExpectedMember> RecordedTree::Expected() const {
    std::vector<ExpectedMember> list;
    std::stringstream lines(FileText(folder_ / "FIRMWARE.tsv"));
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> cells;
        std::stringstream columns(line);
        for (std::string cell; std::getline(columns, cell, '\t');) cells.push_back(cell);
        if (cells.size() < 6 || cells[0].rfind("#", 0) == 0 || cells[0] == "collection") continue;
        list.push_back({cells[1], CellText(cells[2]), CellText(cells[3]), CellText(cells[4]),
                        CellText(cells[5])});
    }
    return list;
}

}  // namespace Vantix::redfish
