// What a server's Redfish service said about itself, as far as a scan reads it: parsed resources,
// in the order of first sight, with nothing interpreted yet.
//
// Private to the platform families. The readers beside this file turn it into facts and identities;
// they are pure. Acquiring it is the channel's work.
#pragma once

#include <boost/json.hpp>
#include <string>
#include <vector>

namespace Vantix::redfish {

/// One resource and the path it was read from (no scheme, host, query or trailing slash).
struct Resource {
    std::string path;
    boost::json::object body;
};

/// Lists are empty when the service does not have or did not give the resources. Names of Redfish
/// schemas (DSP8010) stand in the comments.
struct ServerSnapshot {
    boost::json::object root;             ///< ServiceRoot
    std::vector<Resource> systems;        ///< ComputerSystem
    std::vector<Resource> managers;       ///< Manager
    std::vector<Resource> chassis;        ///< Chassis
    boost::json::object update_service;   ///< UpdateService
    bool has_firmware_inventory = false;  ///< the collection was offered and readable
    std::vector<Resource> firmware;       ///< SoftwareInventory of UpdateService.FirmwareInventory
    std::vector<Resource> software;       ///< SoftwareInventory of UpdateService.SoftwareInventory
    std::vector<Resource> storage;        ///< Storage, with StorageControllers or Controllers
    std::vector<Resource> drives;         ///< Drive
    std::vector<Resource> network_adapters;  ///< NetworkAdapter
    std::vector<Resource> power_supplies;    ///< PowerSupply
    std::vector<Resource> power;             ///< Power (older services: PowerSupplies array inside)
    std::vector<Resource> pcie_devices;      ///< PCIeDevice
    std::vector<Resource> pcie_slots;        ///< PCIeSlots (Slots array inside)
    std::vector<Resource> memory;            ///< Memory
};

}  // namespace Vantix::redfish
