#include "bmc_simulator/large_scenario.h"

#include <boost/json.hpp>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace simulators {
namespace {

namespace json = boost::json;

/// Writes resources of one scenario; every link it makes starts at the service root.
class Writer {
  public:
    explicit Writer(const std::string& folder) : folder_(folder) {}

    void Write(const std::string& path, json::object body) const {
        body["@odata.id"] = path;
        const std::filesystem::path folder = folder_ / path.substr(1);
        std::filesystem::create_directories(folder);
        std::ofstream stream(folder / "index.json", std::ios::binary);
        stream << json::serialize(body) << '\n' << std::flush;
        if (!stream) throw std::runtime_error("cannot write below " + folder_.string());
    }

    void WriteCollection(const std::string& path, const std::string& type,
                         const std::string& member_start, int members) const {
        json::array links;
        for (int i = 1; i <= members; ++i) {
            links.push_back(Link(path + "/" + member_start + std::to_string(i)));
        }
        json::object body{{"@odata.type", "#" + type + "." + type}, {"Name", type}};
        body["Members@odata.count"] = links.size();
        body["Members"] = std::move(links);
        Write(path, std::move(body));
    }

    static json::object Link(const std::string& path) { return {{"@odata.id", path}}; }

  private:
    std::filesystem::path folder_;
};

json::object Resource(const std::string& type, const std::string& id, const std::string& name) {
    return {{"@odata.type", "#" + type}, {"Id", id}, {"Name", name}};
}

void WriteRoot(const Writer& writer, bool with_chassis) {
    json::object root = Resource("ServiceRoot.v1_5_0.ServiceRoot", "RootService", "Root Service");
    root["RedfishVersion"] = "1.6.0";
    root["Vendor"] = "Example";
    root["Product"] = "Example Bench BMC";
    for (const char* name : {"Systems", "Managers", "UpdateService", "SessionService"}) {
        root[name] = Writer::Link(std::string("/redfish/v1/") + name);
    }
    if (with_chassis) root["Chassis"] = Writer::Link("/redfish/v1/Chassis");
    root["Links"] = {{"Sessions", Writer::Link("/redfish/v1/SessionService/Sessions")}};
    root["ProtocolFeaturesSupported"] = {
        {"ExpandQuery",
         {{"ExpandAll", true}, {"Levels", true}, {"MaxLevels", 1}, {"NoLinks", true}}}};
    writer.Write("/redfish/v1", std::move(root));
    json::object sessions =
        Resource("SessionService.v1_1_0.SessionService", "SessionService", "Session Service");
    sessions["ServiceEnabled"] = true;
    sessions["Sessions"] = Writer::Link("/redfish/v1/SessionService/Sessions");
    writer.Write("/redfish/v1/SessionService", std::move(sessions));
}

void WriteSystem(const Writer& writer) {
    const std::string path = "/redfish/v1/Systems/1";
    json::object system = Resource("ComputerSystem.v1_13_0.ComputerSystem", "1", "Bench System");
    system["Manufacturer"] = "Example";
    system["Model"] = "EX-BENCH";
    system["SKU"] = "EXB-0001";
    system["SerialNumber"] = "EXAMPLE0001";
    system["PowerState"] = "On";
    system["BiosVersion"] = "1.0.0";
    system["Bios"] = Writer::Link(path + "/Bios");
    system["Links"] = {{"ManagedBy", json::array{Writer::Link("/redfish/v1/Managers/1")}}};
    writer.WriteCollection("/redfish/v1/Systems", "ComputerSystemCollection", "", 1);
    writer.Write(path, std::move(system));
    writer.Write(path + "/Bios", Resource("Bios.v1_1_0.Bios", "Bios", "BIOS"));
}

void WriteManager(const Writer& writer) {
    json::object manager = Resource("Manager.v1_10_0.Manager", "1", "Bench Manager");
    manager["ManagerType"] = "BMC";
    manager["Model"] = "Example Bench BMC";
    manager["FirmwareVersion"] = "1.0.0";
    manager["Links"] = {{"ManagerForServers", json::array{Writer::Link("/redfish/v1/Systems/1")}}};
    writer.WriteCollection("/redfish/v1/Managers", "ManagerCollection", "", 1);
    writer.Write("/redfish/v1/Managers/1", std::move(manager));
}

std::string DrivePath(int number) {
    return "/redfish/v1/Chassis/1/Drives/" + std::to_string(number);
}

void WriteInventory(const Writer& writer, int entries, bool with_chassis) {
    const std::string inventory = "/redfish/v1/UpdateService/FirmwareInventory";
    json::object service =
        Resource("UpdateService.v1_8_0.UpdateService", "UpdateService", "Update Service");
    service["ServiceEnabled"] = true;
    service["FirmwareInventory"] = Writer::Link(inventory);
    writer.Write("/redfish/v1/UpdateService", std::move(service));
    writer.WriteCollection(inventory, "SoftwareInventoryCollection", "FW-", entries);
    for (int i = 1; i <= entries; ++i) {
        const std::string number = std::to_string(i);
        json::object member = Resource("SoftwareInventory.v1_3_0.SoftwareInventory", "FW-" + number,
                                       "Example Component " + number);
        member["Description"] = "Invented firmware entry for benchmarks";
        member["Manufacturer"] = "Example";
        member["SoftwareId"] = "EX-SWID-" + number;
        member["Version"] = "1." + number + ".0";
        member["Updateable"] = true;
        member["Status"] = {{"State", "Enabled"}, {"Health", "OK"}};
        if (with_chassis) member["RelatedItem"] = json::array{Writer::Link(DrivePath(i))};
        writer.Write(inventory + "/FW-" + number, std::move(member));
    }
}

json::object InSlot(const std::string& type, int number) {
    return {{"PartLocation", {{"LocationType", type}, {"LocationOrdinalValue", number}}}};
}

void WriteChassis(const Writer& writer, int entries) {
    const std::string path = "/redfish/v1/Chassis/1";
    json::object chassis = Resource("Chassis.v1_14_0.Chassis", "1", "Bench Chassis");
    chassis["ChassisType"] = "RackMount";
    chassis["PCIeSlots"] = Writer::Link(path + "/PCIeSlots");
    chassis["Drives"] = Writer::Link(path + "/Drives");
    writer.WriteCollection("/redfish/v1/Chassis", "ChassisCollection", "", 1);
    writer.Write(path, std::move(chassis));
    json::array slots;
    for (int i = 1; i <= 8; ++i) slots.push_back(json::object{{"Location", InSlot("Slot", i)}});
    json::object all_slots = Resource("PCIeSlots.v1_4_0.PCIeSlots", "PCIeSlots", "PCIe Slots");
    all_slots["Slots"] = std::move(slots);
    writer.Write(path + "/PCIeSlots", std::move(all_slots));
    writer.WriteCollection(path + "/Drives", "DriveCollection", "", entries);
    for (int i = 1; i <= entries; ++i) {
        const std::string number = std::to_string(i);
        json::object drive = Resource("Drive.v1_12_0.Drive", number, "Drive " + number);
        drive["SerialNumber"] = "EXDRV" + number;
        drive["PartNumber"] = "EX-PN-" + number;
        drive["PhysicalLocation"] = InSlot("Bay", i);
        writer.Write(DrivePath(i), std::move(drive));
    }
}

}  // namespace

void MakeLargeScenario(const std::string& folder, int entries, LargeScenarioKind kind) {
    const Writer writer(folder);
    const bool with_chassis = kind == LargeScenarioKind::kWithChassis;
    WriteRoot(writer, with_chassis);
    WriteSystem(writer);
    WriteManager(writer);
    WriteInventory(writer, entries, with_chassis);
    if (with_chassis) WriteChassis(writer, entries);
}

}  // namespace simulators
