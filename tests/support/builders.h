// Builders of the records that tests feed to the scan code. Every value is invented.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/connection/connection.h"
#include "platform/identities/software_identity.h"
#include "platform/system_info/system_info.h"
#include "service/update_scan_service/update_scan_report.h"

namespace support {

/// AnIdentity().SoftwareId("UEFI").Version("1.20"): all that is not named stays empty.
class AnIdentity {
  public:
    AnIdentity& SoftwareId(std::string text) { return Set(record_.SoftwareID, std::move(text)); }
    AnIdentity& Name(std::string text) { return Set(record_.Name, std::move(text)); }
    AnIdentity& ElementName(std::string text) { return Set(record_.ElementName, std::move(text)); }
    AnIdentity& Version(std::string text) { return Set(record_.VersionString, std::move(text)); }
    AnIdentity& Description(std::string text) { return Set(record_.Description, std::move(text)); }
    AnIdentity& InstanceId(std::string text) { return Set(record_.InstanceID, std::move(text)); }
    AnIdentity& Slot(std::string text) {
        return Set(record_.AssociatedAdapterSlot, std::move(text));
    }
    AnIdentity& Manufacturer(std::string text) {
        return Set(record_.Manufacturer, std::move(text));
    }
    AnIdentity& SerialNumber(std::string text) {
        return Set(record_.SerialNumber, std::move(text));
    }
    AnIdentity& PartNumber(std::string text) { return Set(record_.PartNumber, std::move(text)); }
    AnIdentity& Classifications(std::string text) {
        return Set(record_.Classifications, std::move(text));
    }
    AnIdentity& PldmSupported(std::string text) {
        return Set(record_.IsPLDMUpdateSupported, std::move(text));
    }
    AnIdentity& SlotType(std::int32_t type) {
        record_.SlotType = type;
        return *this;
    }

    operator Vantix::VantixOptions::SoftwareIdentity_() const { return record_; }

  private:
    AnIdentity& Set(std::string& field, std::string text) {
        field = std::move(text);
        return *this;
    }

    Vantix::VantixOptions::SoftwareIdentity_ record_;
};

class ADriver {
  public:
    ADriver& Identifier(std::string text) { return Set(record_.Identifier, std::move(text)); }
    ADriver& Description(std::string text) { return Set(record_.Description, std::move(text)); }
    ADriver& Version(std::string text) { return Set(record_.Version, std::move(text)); }
    ADriver& DevicePresent(std::int32_t count) {
        record_.DevicePresent = count;
        return *this;
    }

    operator Vantix::DriverData() const { return record_; }

  private:
    ADriver& Set(std::string& field, std::string text) {
        field = std::move(text);
        return *this;
    }

    Vantix::DriverData record_;
};

class AnItem {
  public:
    AnItem& Name(std::string text) { return Set(item_.name, std::move(text)); }
    AnItem& SoftwareId(std::string text) { return Set(item_.softwareId, std::move(text)); }
    AnItem& Version(std::string text) { return Set(item_.version, std::move(text)); }
    AnItem& Slot(std::string text) { return Set(item_.slotNum, std::move(text)); }
    AnItem& Classification(std::string text) { return Set(item_.classification, std::move(text)); }

    operator service::UpdateScanItem() const { return item_; }

  private:
    AnItem& Set(std::string& field, std::string text) {
        field = std::move(text);
        return *this;
    }

    service::UpdateScanItem item_;
};

/// Connections of one kind are told apart by their port.
inline Vantix::VantixConnection::ConnectionInfo AConnection(std::int32_t connect_case, int port) {
    Vantix::VantixConnection::ConnectionInfo connection;
    connection.connect_case = connect_case;
    connection.host = "127.0.0.1";
    connection.port = port;
    return connection;
}

}  // namespace support
