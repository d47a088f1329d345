#include "platform/pmem/nvdimm_facts.h"

#include <algorithm>

#include "platform/log/log.h"
#include "platform/redfish/slot_rules.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::pmem {

using redfish::FirstOf;
using redfish::Known;
using transport::SmbiosMemoryDevice;
using VantixOptions::SoftwareIdentity_;

namespace {

constexpr const char* kNvdimmFactsLog = "nvdimm_facts";

}  // namespace

SoftwareIdentity_ MakeIdentity(const NvdimmFacts& facts) {
    const SmbiosMemoryDevice& record = facts.record;
    const bool has_model = !facts.vendor.empty() && !facts.device.empty();
    const std::string model = has_model ? facts.vendor + "-" + facts.device : "";
    SoftwareIdentity_ identity;
    identity.PartNumber = Known(record.part_number);
    identity.SerialNumber = FirstOf({Known(record.serial_number), facts.serial});
    identity.SoftwareID = FirstOf({identity.PartNumber, model, facts.name});
    identity.Name = FirstOf({identity.PartNumber, facts.name});
    identity.ElementName = identity.Name;
    identity.ProductName = identity.Name;
    identity.Description = "Persistent memory module";
    identity.Caption = "NVDIMM";
    identity.Manufacturer = Known(record.manufacturer);
    const std::string told = FirstOf({record.firmware_version, facts.firmware});
    if (!redfish::IsNoVersion(told)) identity.VersionString = told;
    identity.InstanceID = facts.name;
    identity.Classifications = "10";
    identity.IsPLDMUpdateSupported = "0";
    const redfish::Slot slot = redfish::SlotOfLabel(record.locator, redfish::DeviceKind::kMemory);
    identity.AssociatedAdapterSlot = slot.number;
    identity.SlotType = redfish::kSlotMemory;
    if (identity.VersionString.empty()) {
        Log(4, kNvdimmFactsLog, __LINE__).Stream()
            << facts.name << ": nobody tells its firmware revision; hardware revision "
            << facts.hardware_revision;
    }
    return identity;
}

SmbiosMemoryDevice RecordWithHandle(const std::vector<SmbiosMemoryDevice>& records,
                                    std::uint16_t handle) {
    const auto found =
        std::find_if(records.begin(), records.end(),
                     [&](const SmbiosMemoryDevice& record) { return record.handle == handle; });
    return found == records.end() ? SmbiosMemoryDevice{} : *found;
}

}  // namespace Vantix::pmem
