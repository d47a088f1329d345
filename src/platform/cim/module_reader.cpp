#include "platform/cim/module_reader.h"

#include <algorithm>
#include <map>
#include <set>

#include "platform/cim/software_reader.h"
#include "platform/cim/system_reader.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::cim {
namespace {

using KeySet = std::set<std::string>;

// "02" and "2" are the same bay.
std::string PlainNumber(std::string_view text) {
    const bool is_number =
        !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    if (!is_number) return {};
    const std::size_t first = std::min(text.find_first_not_of('0'), text.size() - 1);
    return std::string(text.substr(first));
}

std::string NumberBehindBay(const std::string& text) {
    const auto words = redfish::Words(text);
    for (std::size_t at = 0; at + 1 < words.size(); ++at) {
        if (words[at] == "bay") return PlainNumber(words[at + 1]);
    }
    return {};
}

std::string OwnBay(const CimInstance& instance) {
    for (const char* property : {"BayNumber", "Bay", "SlotNumber"}) {
        const std::string number = PlainNumber(instance.Text(property));
        if (!number.empty()) return number;
    }
    for (const char* property : {"ElementName", "Name", "Tag"}) {
        const std::string number = NumberBehindBay(instance.Text(property));
        if (!number.empty()) return number;
    }
    return {};
}

// The associations of a chassis as look-ups from key to key.
class Chassis {
  public:
    explicit Chassis(const CimSnapshot& snapshot) : snapshot_(snapshot) {
        for (const CimInstance& package : snapshot.packages) packages_[KeyOf(package)] = &package;
        for (const CimInstance& package : snapshot.chassis) packages_[KeyOf(package)] = &package;
        for (const CimInstance& entry : snapshot.system_packages) {
            packages_of_system_[entry.Reference("Dependent")].insert(entry.Reference("Antecedent"));
            system_of_package_[entry.Reference("Antecedent")] = entry.Reference("Dependent");
        }
        ReadSlots();
        for (const CimInstance& entry : snapshot.installed) {
            AddOwner(entry.Reference("InstalledSoftware"), entry.Reference("System"));
        }
        for (const CimInstance& entry : snapshot.element_software) {
            AddOwner(entry.Reference("Antecedent"), entry.Reference("Dependent"));
        }
    }

    [[nodiscard]] std::vector<const CimInstance*> PackagesOf(const CimInstance& system) const {
        std::vector<const CimInstance*> packages;
        const auto keys = packages_of_system_.find(KeyOf(system));
        if (keys == packages_of_system_.end()) return packages;
        for (const std::string& key : keys->second) {
            const auto package = packages_.find(key);
            if (package != packages_.end()) packages.push_back(package->second);
        }
        return packages;
    }

    [[nodiscard]] std::string BayOf(const CimInstance& system) const {
        const auto packages = PackagesOf(system);
        for (const CimInstance* package : packages) {
            const auto slot = slot_of_package_.find(KeyOf(*package));
            if (slot != slot_of_package_.end()) return slot->second;
        }
        std::string bay = OwnBay(system);
        for (const CimInstance* package : packages) {
            if (bay.empty()) bay = OwnBay(*package);
        }
        return bay;
    }

    // The systems that the software is installed on; none when nobody tells.
    [[nodiscard]] KeySet OwnersOf(const std::string& software) const {
        const auto owners = owners_.find(software);
        return owners == owners_.end() ? KeySet() : owners->second;
    }

  private:
    void ReadSlots() {
        std::map<std::string, std::string> number_of_slot;
        for (const CimInstance& slot : snapshot_.slots) {
            const std::string number = PlainNumber(slot.Text("Number"));
            if (!number.empty()) number_of_slot[KeyOf(slot)] = number;
        }
        for (const CimInstance& entry : snapshot_.packages_in_slot) {
            const auto number = number_of_slot.find(entry.Reference("Antecedent"));
            if (number == number_of_slot.end()) continue;
            slot_of_package_[entry.Reference("Dependent")] = number->second;
        }
    }

    void AddOwner(const std::string& software, const std::string& element) {
        if (software.empty() || element.empty()) return;
        const auto system = system_of_package_.find(element);
        owners_[software].insert(system == system_of_package_.end() ? element : system->second);
    }

    const CimSnapshot& snapshot_;
    std::map<std::string, const CimInstance*> packages_;
    std::map<std::string, KeySet> packages_of_system_;
    std::map<std::string, std::string> system_of_package_;
    std::map<std::string, std::string> slot_of_package_;
    std::map<std::string, KeySet> owners_;
};

bool Share(const KeySet& left, const KeySet& right) {
    return std::any_of(left.begin(), left.end(),
                       [&](const std::string& key) { return right.count(key) != 0; });
}

// The installed software whose owners `is_meant` accepts.
template <typename Rule>
std::vector<VantixOptions::SoftwareIdentity_> SoftwareOf(const CimSnapshot& snapshot,
                                                         const Chassis& chassis, Rule is_meant) {
    CimInventory inventory = ReadSoftware(snapshot);
    std::vector<VantixOptions::SoftwareIdentity_> components;
    for (std::size_t at = 0; at < inventory.identities.size(); ++at) {
        if (!is_meant(chassis.OwnersOf(inventory.keys[at]))) continue;
        components.push_back(std::move(inventory.identities[at]));
    }
    return components;
}

// Switches and blades keep their firmware to themselves; the module has the rest.
KeySet OtherSystems(const CimSnapshot& snapshot) {
    const bool has_manager =
        std::any_of(snapshot.systems.begin(), snapshot.systems.end(), IsChassisManager);
    KeySet others;
    for (const CimInstance& system : snapshot.systems) {
        const bool is_module = has_manager ? IsChassisManager(system) : !IsSwitch(system);
        if (!is_module) others.insert(KeyOf(system));
    }
    return others;
}

}  // namespace

ModuleComponents ReadChassisModule(const CimSnapshot& snapshot) {
    const Chassis chassis(snapshot);
    const KeySet others = OtherSystems(snapshot);
    ModuleComponents module;
    std::tie(module.machine_type, module.serial_number) = ReadMachine(snapshot);
    module.components =
        SoftwareOf(snapshot, chassis, [&](const KeySet& owners) { return !Share(owners, others); });
    return module;
}

std::optional<ModuleComponents> ReadSwitch(const CimSnapshot& snapshot, std::string_view bay) {
    const Chassis chassis(snapshot);
    const std::string wanted = PlainNumber(bay);
    const auto is_it = [&](const CimInstance& system) {
        return IsSwitch(system) && !wanted.empty() && chassis.BayOf(system) == wanted;
    };
    const auto system = std::find_if(snapshot.systems.begin(), snapshot.systems.end(), is_it);
    if (system == snapshot.systems.end()) return std::nullopt;
    ModuleComponents module;
    auto sources = chassis.PackagesOf(*system);
    sources.push_back(&*system);
    for (const CimInstance* source : sources) {
        if (module.machine_type.empty()) module.machine_type = ModelOf(*source);
        if (!module.serial_number.empty()) continue;
        module.serial_number = redfish::Known(source->Text("SerialNumber"));
    }
    const KeySet own{KeyOf(*system)};
    module.components =
        SoftwareOf(snapshot, chassis, [&](const KeySet& owners) { return Share(owners, own); });
    return module;
}

}  // namespace Vantix::cim
