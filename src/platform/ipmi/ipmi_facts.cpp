#include "platform/ipmi/ipmi_facts.h"

#include "platform/redfish/bmc_kind.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::ipmi {

using redfish::FirstOf;
using redfish::Known;
using transport::DeviceId;
using transport::FruData;

namespace {

struct Maker {
    std::uint32_t enterprise_number;  // IANA private enterprise numbers
    redfish::BmcKind kind;
};

constexpr Maker kMakers[] = {
    {11, redfish::kBmcKindIlo},        {47196, redfish::kBmcKindIlo},
    {674, redfish::kBmcKindIdrac},     {5771, redfish::kBmcKindCimc},
    {10368, redfish::kBmcKindIrmc},    {20974, redfish::kBmcKindAmi},
    {49871, redfish::kBmcKindOpenBmc},
};

constexpr std::uint32_t kUnknownMaker = 0xfffff;

}  // namespace

std::string MachineTypeOf(const FruData& fru) {
    return FirstOf({Known(fru.product_name), Known(fru.product_part_number), Known(fru.board_name),
                    Known(fru.board_part_number), Known(fru.chassis_part_number)});
}

std::string SerialNumberOf(const FruData& fru) {
    return FirstOf({Known(fru.product_serial_number), Known(fru.chassis_serial_number),
                    Known(fru.board_serial_number)});
}

int BmcKindOf(const DeviceId& device, const FruData& fru) {
    for (const Maker& maker : kMakers) {
        if (maker.enterprise_number == device.manufacturer) return maker.kind;
    }
    redfish::BmcFacts facts;
    facts.product = fru.product_name + "\n" + fru.product_part_number;
    facts.name = fru.board_name;
    return redfish::BmcKindOf(facts);
}

std::string ManufacturerOf(const DeviceId& device, const FruData& fru) {
    const std::string name =
        FirstOf({Known(fru.product_manufacturer), Known(fru.board_manufacturer)});
    if (!name.empty()) return name;
    if (device.manufacturer == 0 || device.manufacturer == kUnknownMaker) return {};
    return "Enterprise number " + std::to_string(device.manufacturer);
}

}  // namespace Vantix::ipmi
