// Builds scan items: AnItem().Name("BMC").Version("1.10"). What a test does not name has a plain
// value of its own, so that the item is listed, saved and loaded back unchanged.
#pragma once

#include <string>

#include "service/update_scan_service/update_scan_report.h"

namespace test_support {

class AnItem {
  public:
    AnItem() {
        item_.softwareId = "EXAMPLE";
        item_.version = "1.00";
        item_.classification = "10";
        item_.name = "Example Unit";
        item_.pldm = "1";
        item_.hasDevice = 1;
    }

    AnItem& SoftwareId(const std::string& value) { return Set(item_.softwareId, value); }
    AnItem& Version(const std::string& value) { return Set(item_.version, value); }
    AnItem& Classification(const std::string& value) { return Set(item_.classification, value); }
    AnItem& Description(const std::string& value) { return Set(item_.description, value); }
    AnItem& Name(const std::string& value) { return Set(item_.name, value); }
    AnItem& Pldm(const std::string& value) { return Set(item_.pldm, value); }
    AnItem& InstanceId(const std::string& value) { return Set(item_.instanceId, value); }
    AnItem& HasDevice(int value) {
        item_.hasDevice = value;
        return *this;
    }
    AnItem& Slot(const std::string& number, const std::string& type) {
        item_.slotNum = number;
        return Set(item_.slotType, type);
    }
    /// A driver of an adapter, as the result table lists it.
    AnItem& AdapterDriver() { return Classification("22").SoftwareId("exampledrv_0a1B2c3D"); }

    operator service::UpdateScanItem() const { return item_; }  // NOLINT: reads as an item

  private:
    AnItem& Set(std::string& field, const std::string& value) {
        field = value;
        return *this;
    }

    service::UpdateScanItem item_;
};

}  // namespace test_support
