#include "platform/redfish/managed_system.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;
using transport::IsSameLink;

bool LinksTo(const boost::json::object& body, std::string_view list, std::string_view path) {
    const boost::json::object* links = json::Object(body, "Links");
    if (links == nullptr) return false;
    const std::vector<std::string> targets = json::Links(*links, list);
    return std::any_of(targets.begin(), targets.end(),
                       [&](const std::string& target) { return IsSameLink(target, path); });
}

bool IsProvidingManager(const ServerSnapshot& snapshot, const Resource& manager) {
    return LinksTo(snapshot.root, "ManagerProvidingService", manager.path);
}

bool Manages(const Resource& manager, const Resource& system) {
    return LinksTo(manager.body, "ManagerForServers", system.path) ||
           LinksTo(system.body, "ManagedBy", manager.path);
}

bool HasBios(const Resource& system) {
    return !json::Link(system.body, "Bios").empty() ||
           !Known(json::Text(system.body, "BiosVersion")).empty();
}

bool IsPhysical(const Resource& system) {
    const std::string type = json::Text(system.body, "SystemType");
    return type.empty() || Lower(type) == "physical";
}

int SystemScore(const ServerSnapshot& snapshot, const Resource& system) {
    int from_manager = 0;
    for (const Resource& manager : snapshot.managers) {
        if (!LinksTo(manager.body, "ManagerForServers", system.path)) continue;
        from_manager = std::max(from_manager, IsProvidingManager(snapshot, manager) ? 12 : 8);
    }
    const boost::json::object* links = json::Object(system.body, "Links");
    const bool links_back = links != nullptr && !json::Links(*links, "ManagedBy").empty();
    return from_manager + (links_back ? 4 : 0) + (HasBios(system) ? 8 : 0) +
           (IsPhysical(system) ? 2 : 0);
}

std::string ListOfIds(const std::vector<const Resource*>& systems) {
    std::string list;
    for (const Resource* system : systems) list += (list.empty() ? "" : ", ") + IdOf(*system);
    return list;
}

std::vector<const Resource*> ComputerSystems(const ServerSnapshot& snapshot) {
    std::vector<const Resource*> systems;
    for (const Resource& resource : snapshot.systems) {
        if (IsComputerSystem(resource)) systems.push_back(&resource);
    }
    return systems;
}

const Resource* SystemWithId(const std::vector<const Resource*>& systems, const std::string& id) {
    const auto found = std::find_if(systems.begin(), systems.end(), [&](const Resource* system) {
        return Lower(IdOf(*system)) == Lower(id);
    });
    return found == systems.end() ? nullptr : *found;
}

const Resource* BestSystem(const ServerSnapshot& snapshot,
                           const std::vector<const Resource*>& systems, std::string& notice) {
    int best_score = 0;
    std::vector<const Resource*> best;
    for (const Resource* system : systems) {
        const int score = SystemScore(snapshot, *system);
        if (best.empty() || score > best_score) best.clear();
        if (best.empty() || score == best_score) best.push_back(system);
        best_score = std::max(best_score, score);
    }
    if (best.size() > 1) {
        notice = "This service manages " + std::to_string(best.size()) + " computer systems (" +
                 ListOfIds(best) + "); using " + IdOf(*best.front()) +
                 ", choose another one with --system-id.";
    }
    return best.empty() ? nullptr : best.front();
}

int ManagerScore(const ServerSnapshot& snapshot, const Resource& manager, const Resource* system) {
    const std::string type = Lower(json::Text(manager.body, "ManagerType"));
    int score = IsProvidingManager(snapshot, manager) ? 2 : 0;
    if (system != nullptr && Manages(manager, *system)) score += 16;
    if (type == "bmc") score += system != nullptr ? 8 : 4;
    if (type == "enclosuremanager") score += system != nullptr ? 4 : 8;
    return score;
}

const Resource* BestManager(const ServerSnapshot& snapshot, const Resource* system) {
    const Resource* best = nullptr;
    int best_score = 0;
    for (const Resource& manager : snapshot.managers) {
        if (IsErrorDocument(manager.body)) continue;
        const int score = ManagerScore(snapshot, manager, system);
        if (best == nullptr || score > best_score) best = &manager;
        best_score = std::max(best_score, score);
    }
    return best;
}

const Resource* EnclosureChassis(const ServerSnapshot& snapshot, const Resource* manager) {
    const Resource* best = nullptr;
    int best_score = 0;
    for (const Resource& chassis : snapshot.chassis) {
        if (IsErrorDocument(chassis.body)) continue;
        const bool is_enclosure = Lower(json::Text(chassis.body, "ChassisType")) == "enclosure";
        const bool is_managed =
            manager != nullptr && LinksTo(manager->body, "ManagerForChassis", chassis.path);
        const bool is_inside = !json::Link(json::Object(chassis.body, "Links") == nullptr
                                               ? boost::json::object()
                                               : *json::Object(chassis.body, "Links"),
                                           "ContainedBy")
                                    .empty();
        const int score = (is_enclosure ? 8 : 0) + (is_managed ? 4 : 0) + (is_inside ? 0 : 2);
        if (best == nullptr || score > best_score) best = &chassis;
        best_score = std::max(best_score, score);
    }
    return best;
}

void ReadFacts(const Resource& source, ManagedSystem& found) {
    found.machine_type =
        FirstOf({Known(json::Text(source.body, "Model")), Known(json::Text(source.body, "SKU")),
                 Known(json::Text(source.body, "PartNumber"))});
    found.serial_number = Known(json::Text(source.body, "SerialNumber"));
    found.bios_version = json::Text(source.body, "BiosVersion");
}

}  // namespace

bool IsErrorDocument(const boost::json::object& body) {
    return body.contains("error") && json::Text(body, "@odata.type").empty() &&
           json::Text(body, "Id").empty();
}

std::string IdOf(const Resource& resource) {
    return FirstOf({json::Text(resource.body, "Id"), transport::LastSegment(resource.path)});
}

bool IsComputerSystem(const Resource& resource) {
    if (IsErrorDocument(resource.body)) return false;
    const std::string type = json::Text(resource.body, "@odata.type");
    if (!type.empty() && type.rfind("#ComputerSystem.", 0) != 0) return false;
    const std::string segment = Lower(transport::LastSegment(resource.path));
    if (segment == "settings" || segment == "sd" || segment == "capabilities") return false;
    // A template for creating systems annotates its members instead of giving them.
    return std::none_of(resource.body.begin(), resource.body.end(), [](const auto& member) {
        return ContainsIgnoringCase(std::string_view(member.key().data(), member.key().size()),
                                    "oncreate");
    });
}

ManagedSystem FindManagedSystem(const ServerSnapshot& snapshot, const std::string& system_id) {
    ManagedSystem found;
    const std::vector<const Resource*> systems = ComputerSystems(snapshot);
    if (system_id.empty()) {
        found.system = BestSystem(snapshot, systems, found.notice);
    } else {
        found.system = SystemWithId(systems, system_id);
    }
    found.manager = BestManager(snapshot, found.system);
    if (found.manager != nullptr) {
        found.manager_version = json::Text(found.manager->body, "FirmwareVersion");
    }
    if (found.system != nullptr) {
        ReadFacts(*found.system, found);
    } else if (!system_id.empty()) {
        found.notice = "No computer system has the Id \"" + system_id + "\"; the service has " +
                       (systems.empty() ? "none" : ListOfIds(systems)) + ".";
    } else {
        found.chassis = EnclosureChassis(snapshot, found.manager);
        if (found.chassis != nullptr) ReadFacts(*found.chassis, found);
    }
    return found;
}

}  // namespace Vantix::redfish
