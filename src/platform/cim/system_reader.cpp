#include "platform/cim/system_reader.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "platform/redfish/text_rules.h"

namespace Vantix::cim {
namespace {

bool IsDedicatedTo(const CimInstance& system, std::initializer_list<std::string_view> purposes) {
    const auto& values = system.Values("Dedicated");
    return std::any_of(values.begin(), values.end(), [&](const std::string& value) {
        return std::find(purposes.begin(), purposes.end(), value) != purposes.end();
    });
}

bool IsSilent(const CimInstance& system) {
    const auto& values = system.Values("Dedicated");
    return std::all_of(values.begin(), values.end(), [](const std::string& value) {
        return value.empty() || value == "0" || value == "1" || value == "2";
    });
}

bool ClassSays(const CimInstance& system, std::string_view part) {
    return IsSilent(system) && redfish::ContainsIgnoringCase(system.class_name, part);
}

std::string KnownText(const CimInstance& instance, std::string_view property) {
    return redfish::Known(instance.Text(property));
}

bool TellsAnything(const CimInstance& package) {
    return !ModelOf(package).empty() || !KnownText(package, "SerialNumber").empty();
}

// ChassisPackageType: 29 blade enclosure, 17 main chassis, 23 rack mount.
int RankOf(const CimInstance& chassis) {
    const std::string type = chassis.Text("ChassisPackageType");
    if (type == "29") return 0;
    return type == "17" || type == "23" ? 1 : 2;
}

const CimInstance* BestChassis(const CimSnapshot& snapshot) {
    const CimInstance* best = nullptr;
    for (const CimInstance& chassis : snapshot.chassis) {
        if (!TellsAnything(chassis)) continue;
        if (best == nullptr || RankOf(chassis) < RankOf(*best)) best = &chassis;
    }
    return best;
}

// "<model>:<serial number>" under the description "CIM:Model:SerialNumber" (DSP1058).
std::pair<std::string, std::string> FromIdentifyingInfo(const CimInstance& system) {
    const auto& kinds = system.Values("IdentifyingDescriptions");
    const auto& values = system.Values("OtherIdentifyingInfo");
    for (std::size_t at = 0; at < std::min(kinds.size(), values.size()); ++at) {
        const std::size_t colon = values[at].rfind(':');
        if (redfish::Lower(kinds[at]) != "cim:model:serialnumber" || colon == std::string::npos) {
            continue;
        }
        return {redfish::Known(values[at].substr(0, colon)),
                redfish::Known(values[at].substr(colon + 1))};
    }
    return {};
}

bool IsHost(const CimInstance& system) {
    return !IsManagementController(system) && !IsChassisManager(system) && !IsSwitch(system);
}

}  // namespace

bool IsManagementController(const CimInstance& system) {
    return IsDedicatedTo(system, {"28"}) || ClassSays(system, "managementcontroller") ||
           ClassSays(system, "serviceprocessor");
}

bool IsChassisManager(const CimInstance& system) {
    return IsDedicatedTo(system, {"29"}) || ClassSays(system, "chassismanager");
}

bool IsSwitch(const CimInstance& system) {
    return IsDedicatedTo(system, {"5", "6", "7"}) || ClassSays(system, "switch");
}

std::string ModelOf(const CimInstance& package) {
    return redfish::FirstOf(
        {KnownText(package, "Model"), KnownText(package, "SKU"), KnownText(package, "PartNumber")});
}

std::pair<std::string, std::string> ReadMachine(const CimSnapshot& snapshot) {
    std::pair<std::string, std::string> machine;
    const auto complete = [&machine](std::string type, std::string serial) {
        if (machine.first.empty()) machine.first = std::move(type);
        if (machine.second.empty()) machine.second = std::move(serial);
    };
    if (const CimInstance* chassis = BestChassis(snapshot)) {
        complete(ModelOf(*chassis), KnownText(*chassis, "SerialNumber"));
    }
    for (const CimInstance& system : snapshot.systems) {
        if (!IsHost(system)) continue;
        const auto told = FromIdentifyingInfo(system);
        complete(ModelOf(system), KnownText(system, "SerialNumber"));
        complete(told.first, told.second);
    }
    return machine;
}

const CimInstance* FindController(const CimSnapshot& snapshot) {
    const auto found =
        std::find_if(snapshot.systems.begin(), snapshot.systems.end(), IsManagementController);
    return found == snapshot.systems.end() ? nullptr : &*found;
}

redfish::BmcFacts ReadControllerFacts(const CimInstance* controller) {
    redfish::BmcFacts facts;
    if (controller == nullptr) return facts;
    facts.vendor = redfish::FirstOf({controller->Text("Manufacturer"), controller->Text("Vendor")});
    facts.model = controller->Text("Model");
    facts.name = redfish::FirstOf(
        {controller->Text("ElementName"), controller->Text("Caption"), controller->Text("Name")});
    facts.product =
        redfish::FirstOf({controller->Text("Caption"), controller->Text("Description")});
    facts.firmware_version = controller->Text("FirmwareVersion");
    return facts;
}

}  // namespace Vantix::cim
