// Snapshots from a few lines of JSON, for the tests of the readers.
#pragma once

#include <boost/json.hpp>
#include <string>
#include <vector>

#include "platform/redfish/server_snapshot.h"

namespace Vantix::redfish {

/// Throws on text that is no object: a mistake of the test itself.
inline boost::json::object ParseObject(const std::string& text) {
    return boost::json::parse(text).as_object();
}

inline Resource MakeResource(const std::string& path, const std::string& text) {
    return {path, ParseObject(text)};
}

/// A member of the firmware inventory under its Id's path.
inline Resource FirmwareMember(const std::string& id, const std::string& text) {
    return MakeResource("/redfish/v1/UpdateService/FirmwareInventory/" + id, text);
}

inline ServerSnapshot SnapshotWithFirmware(std::vector<Resource> members) {
    ServerSnapshot snapshot;
    snapshot.has_firmware_inventory = true;
    snapshot.firmware = std::move(members);
    return snapshot;
}

}  // namespace Vantix::redfish
