// From what a service says about a place ("OCP Slot 2", "Bay 4") to slot kind and slot number.
//
// Kinds follow the slot type name table of the result tables. Deliberately not here: which resource
// the place is taken from (device_index.h).
#pragma once

#include <boost/json.hpp>
#include <cstdint>
#include <string>

namespace Vantix::redfish {

enum SlotType : std::int32_t {
    kSlotOnBoard = 0,
    kSlotDriveBay = 1,
    kSlotPsu = 2,
    kSlotPci = 3,
    kSlotMemory = 4,
    kSlotM2Bay = 5,
    kSlot7mmBay = 6,
    kSlotPcie = 7,
    kSlotRetimer = 8,
    kSlotOcp = 9,
    kSlotRetimerCff = 10,
    kSlotRetimerRiser = 11,
    kSlotRetimerOcp = 12,
};

enum class DeviceKind {
    kNetworkAdapter,
    kStorageController,
    kDrive,
    kPowerSupply,
    kPcieDevice,
    kMemory,
};

/// A place in the machine; without number it is unknown or on the board.
struct Slot {
    std::string number;  ///< as printed on the machine, leading zeros dropped; may be a letter
    std::int32_t type = kSlotOnBoard;
    [[nodiscard]] bool IsKnown() const { return !number.empty(); }
    bool operator==(const Slot& other) const = default;
};

/// `location` is a Location or PhysicalLocation (Resource.Location, DSP8010): its PartLocation, or
/// the older Info text. `slot_type` is PCIeSlots' SlotType where the place is one of its slots.
/// The number is the one printed on the label, else LocationOrdinalValue, else the label's last
/// digits or its single letter.
[[nodiscard]] Slot SlotOfLocation(const boost::json::object& location, DeviceKind kind,
                                  const std::string& slot_type = {});

/// The same for a bare label.
[[nodiscard]] Slot SlotOfLabel(const std::string& label, DeviceKind kind);

/// Whether a text is a label of a slot or bay and nothing else ("PCIe Slot 3", "Bay 2"); needed
/// where labels stand in fields meant for other texts.
[[nodiscard]] bool IsSlotLabel(const std::string& text);

}  // namespace Vantix::redfish
