#include "platform/redfish/device_survey.h"

#include <algorithm>
#include <utility>

#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {

using transport::FoldLink;
using transport::IsSameLink;
using transport::LinkPath;
using transport::RedfishAnswer;
using transport::RedfishFailure;
namespace json = transport::json;

namespace {

std::vector<std::string> LinksAt(const boost::json::object& body, const char* name) {
    const auto* links = json::Object(body, "Links");
    return links == nullptr ? std::vector<std::string>() : json::Links(*links, name);
}

bool AnySame(const std::vector<std::string>& links, const std::string& path) {
    return std::any_of(links.begin(), links.end(),
                       [&](const std::string& link) { return IsSameLink(link, path); });
}

}  // namespace

void DeviceSurvey::Start() {
    Started();
    Hold();  // until the system is known
    const std::string path = LinkPath(json::Link(context_.snapshot.root, "Chassis"));
    if (path.empty()) {
        ChassisEnded();
        return;
    }
    ReadAll("chassis", path, OptionalCollection(), context_.snapshot.chassis,
            [this](const RedfishFailure&) { ChassisEnded(); });
}

void DeviceSurvey::SystemKnown(const Resource* system) {
    system_known_ = true;
    if (system != nullptr) {
        system_path_ = system->path;
        system_ = system->body;
    }
    const std::string storage = LinkPath(json::Link(system_, "Storage"));
    ReadPcieDevices();
    if (storage.empty()) {
        StorageEnded();
    } else {
        transport::CollectionOptions options = OptionalCollection();
        options.expand_levels = 2;  // the drives come along where the service can do that
        ReadAll("storage", storage, options, context_.snapshot.storage,
                [this](const RedfishFailure&) { StorageEnded(); });
    }
    if (chassis_ended_) ReadChassisDevices();
    Release();
}

void DeviceSurvey::StorageEnded() {
    storage_ended_ = true;
    for (std::size_t index = 0; index < context_.snapshot.storage.size(); ++index) {
        TakeDrives(context_.snapshot.storage[index].body);
        ReadControllers(index);
    }
    ReadDrives();
}

// Drives that came along inline are complete; of the others the links are kept.
void DeviceSurvey::TakeDrives(boost::json::object& storage) {
    auto* drives = storage.if_contains("Drives");
    auto* list = drives == nullptr ? nullptr : drives->if_array();
    if (list == nullptr) return;
    for (auto& drive : *list) {
        const std::string link = json::LinkOf(drive);
        auto* body = drive.if_object();
        if (body == nullptr || !body->contains("Id")) {
            drive_links_.push_back(link);
        } else if (seen_.insert(FoldLink(LinkPath(link))).second) {
            context_.snapshot.drives.push_back({LinkPath(link), std::move(*body)});
            ++StatusOf("drives").items_read;
        }
        drive = boost::json::object{{"@odata.id", link}};
    }
    Report("drives");
}

// Newer services keep controllers in a collection of their own; they are put into the storage as if
// they had come inline, so that readers look in one place.
void DeviceSurvey::ReadControllers(std::size_t storage) {
    const auto& body = context_.snapshot.storage[storage].body;
    if (!json::Objects(body, "StorageControllers").empty()) return;
    const std::string path = LinkPath(json::Link(body, "Controllers"));
    const auto* inline_controllers = json::Object(body, "Controllers");
    const bool came_inline =
        inline_controllers != nullptr && inline_controllers->contains("Members");
    if (path.empty() || came_inline) return;
    ReadAll("storage controllers", path, OptionalCollection(), controllers_[storage],
            [this, storage](const RedfishFailure&) {
                boost::json::array list;
                for (auto& controller : controllers_[storage]) {
                    list.push_back(std::move(controller.body));
                }
                context_.snapshot.storage[storage].body["Controllers"] = std::move(list);
            });
}

void DeviceSurvey::ChassisEnded() {
    chassis_ended_ = true;
    if (system_known_) ReadChassisDevices();
}

// Chassis of the system alone, where the service tells which they are: the others belong to
// neighbours in the same enclosure.
bool DeviceSurvey::IsOwnChassis(const Resource& chassis) const {
    if (system_path_.empty()) return true;
    const auto own = LinksAt(system_, "Chassis");
    const auto systems = LinksAt(chassis.body, "ComputerSystems");
    if (own.empty() && systems.empty()) return true;
    if (AnySame(own, chassis.path) || AnySame(systems, system_path_)) return true;
    const auto* links = json::Object(chassis.body, "Links");
    const std::string container = links == nullptr ? "" : json::Link(*links, "ContainedBy");
    return systems.empty() && !container.empty() && AnySame(own, container);
}

void DeviceSurvey::ReadChassisDevices() {
    auto& snapshot = context_.snapshot;
    for (const auto& chassis : snapshot.chassis) {
        if (!IsOwnChassis(chassis)) continue;
        const auto read = [&](const char* source, const char* link, std::vector<Resource>& target) {
            for (const auto& path : NewPaths({json::Link(chassis.body, link)})) {
                ReadAll(source, path, OptionalCollection(), target, nullptr);
            }
        };
        read("network adapters", "NetworkAdapters", snapshot.network_adapters);
        for (const auto& path : NewPaths({json::Link(chassis.body, "Drives")})) {
            ++drive_collections_;
            ReadAll("drives", path, OptionalCollection(), snapshot.drives,
                    [this](const RedfishFailure&) {
                        --drive_collections_;
                        ReadDrives();
                    });
        }
        read("PCIe devices", "PCIeDevices", snapshot.pcie_devices);
        for (const auto& path : NewPaths({json::Link(chassis.body, "PCIeSlots")})) {
            ReadOne("PCIe slots", path, true, snapshot.pcie_slots, nullptr);
        }
        ReadPowerSupplies(chassis.body);
    }
    chassis_devices_asked_ = true;
    ReadDrives();
}

void DeviceSurvey::ReadPowerSupplies(const boost::json::object& chassis) {
    auto& snapshot = context_.snapshot;
    for (const auto& subsystem : NewPaths({json::Link(chassis, "PowerSubsystem")})) {
        // The supplies are asked for ahead; only where they are elsewhere the link is needed.
        ReadAll("power supplies", subsystem + "/PowerSupplies", OptionalCollection(),
                snapshot.power_supplies, [this, subsystem](const RedfishFailure& failure) {
                    if (failure.problem == transport::RedfishProblem::kNotFound) {
                        Forget("power supplies");
                        ReadPowerSuppliesByLink(subsystem);
                    }
                });
        return;
    }
    for (const auto& path : NewPaths({json::Link(chassis, "Power")})) {
        ReadOne("power supplies", path, true, snapshot.power, nullptr);
    }
}

void DeviceSurvey::ReadPowerSuppliesByLink(const std::string& subsystem_path) {
    Read(subsystem_path, true, [this, subsystem_path](RedfishAnswer&& answer) {
        if (!answer.Ok()) return;
        const std::string path = LinkPath(json::Link(answer.body, "PowerSupplies"));
        if (path.empty() || IsSameLink(path, subsystem_path + "/PowerSupplies")) return;
        ReadAll("power supplies", path, OptionalCollection(), context_.snapshot.power_supplies,
                nullptr);
    });
}

// Some services list PCIe devices as links in the system, some as a collection there.
void DeviceSurvey::ReadPcieDevices() {
    auto& devices = context_.snapshot.pcie_devices;
    if (json::Array(system_, "PCIeDevices") != nullptr) {
        const auto paths = NewPaths(json::Links(system_, "PCIeDevices"));
        if (!paths.empty()) ReadEach("PCIe devices", paths, OptionalCollection(), devices, nullptr);
        return;
    }
    for (const auto& path : NewPaths({json::Link(system_, "PCIeDevices")})) {
        ReadAll("PCIe devices", path, OptionalCollection(), devices, nullptr);
    }
}

// Drives that no chassis collection gave are read singly, once all of those have ended.
void DeviceSurvey::ReadDrives() {
    if (!storage_ended_ || !chassis_devices_asked_ || drive_collections_ > 0) return;
    for (const auto& drive : context_.snapshot.drives) seen_.insert(FoldLink(drive.path));
    const auto paths = NewPaths(drive_links_);
    if (!paths.empty()) {
        ReadEach("drives", paths, OptionalCollection(), context_.snapshot.drives, nullptr);
    }
}

// The paths behind `links` that were not asked for before, in order.
std::vector<std::string> DeviceSurvey::NewPaths(const std::vector<std::string>& links) {
    std::vector<std::string> paths;
    for (const auto& link : links) {
        std::string path = LinkPath(link);
        if (!path.empty() && seen_.insert(FoldLink(path)).second) paths.push_back(std::move(path));
    }
    return paths;
}

}  // namespace Vantix::redfish
