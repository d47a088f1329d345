// The devices of a snapshot, found by any link that services use for them.
//
// Inventory entries name the device that carries them by a link. That link may differ in letter
// case, carry a JSON pointer into an older resource, or lead to a part of the device (a port, a
// function); the index finds the device all the same. Deliberately not here: firmware entries.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/redfish/server_snapshot.h"
#include "platform/redfish/slot_rules.h"

namespace Vantix::redfish {

struct Device {
    DeviceKind kind = DeviceKind::kPcieDevice;
    std::string path;  ///< with "#pointer" for parts of an older resource
    std::string id;
    std::string name;
    std::string model;
    std::string manufacturer;
    std::string serial_number;  ///< placeholders read as empty, here and below
    std::string part_number;
    std::string firmware_version;  ///< as reported, also "N/A"
    Slot slot;
    /// Folded paths of other resources that are the same hardware (the PCIe device of an adapter).
    std::vector<std::string> same_hardware;
    bool is_absent = false;  ///< Status.State Absent
    /// An older view (Chassis.Power) of what a newer resource shows too.
    bool is_superseded = false;
};

class DeviceIndex {
  public:
    explicit DeviceIndex(const ServerSnapshot& snapshot);

    /// In the order of kinds: network adapters, storage controllers, drives, power supplies, PCIe
    /// devices, memory; inside a kind that of the snapshot.
    [[nodiscard]] const std::vector<Device>& Devices() const { return devices_; }

    /// The device behind a link as a service writes it, or the nearest device above it; nullptr
    /// when the link leads to none. The pointer lives as long as the index.
    [[nodiscard]] const Device* Find(std::string_view link) const;

    /// The other views of the same hardware: by link, else by equal serial number.
    [[nodiscard]] std::vector<const Device*> SameHardware(const Device& device) const;

  private:
    void AddNetworkAdapters(const ServerSnapshot& snapshot);
    void AddStorage(const ServerSnapshot& snapshot);
    void AddControllersWithin(const Resource& storage);
    void AddPowerSupplies(const ServerSnapshot& snapshot);
    void AddPlain(const std::vector<Resource>& resources, DeviceKind kind);
    void ReadPcieSlots(const ServerSnapshot& snapshot);
    void InheritSlots();
    void Add(Device device, const std::vector<std::string>& aliases = {});

    std::vector<Device> devices_;
    std::map<std::string, std::size_t> by_key_;   ///< folded link -> place in devices_
    std::map<std::string, Slot> slot_of_device_;  ///< folded path -> slot that PCIeSlots tells
};

}  // namespace Vantix::redfish
