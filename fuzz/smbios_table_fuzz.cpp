// Any bytes as an SMBIOS table, its entry point, and a single structure: read without a crash, and
// every text that comes out is clean.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "transport/smbios/host_interface.h"
#include "transport/smbios/smbios_entry_point.h"
#include "transport/smbios/smbios_records.h"
#include "transport/smbios/smbios_table.h"

namespace {

using namespace Vantix::transport;  // NOLINT: the subject is made of the transport's records

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    if (std::any_of(text.begin(), text.end(), is_control)) std::abort();
}

void RequireSound(const SmbiosStructure& structure) {
    if (structure.formatted.size() < 4 || structure.formatted.size() > 255) std::abort();
    for (std::size_t offset = 0; offset < 300; ++offset) RequireClean(structure.Text(offset));
}

void ReadAll(const SmbiosStructures& structures) {
    for (const SmbiosStructure& structure : structures) RequireSound(structure);
    RequireClean(ReadSmbiosBios(structures).version);
    RequireClean(ReadSmbiosSystem(structures).sku_number);
    RequireClean(ReadSmbiosBaseboard(structures).serial_number);
    for (const SmbiosSlot& slot : ReadSmbiosSlots(structures)) {
        RequireClean(slot.designation);
        if (slot.address && PciAddressText(*slot.address).size() != 12) std::abort();
    }
    for (const SmbiosMemoryDevice& device : ReadSmbiosMemoryDevices(structures)) {
        RequireClean(device.locator);
        RequireClean(device.firmware_version);
    }
    for (const RedfishHostInterface& interface : ReadRedfishHostInterfaces(structures)) {
        RequireClean(interface.service_address);
        RequireClean(interface.service_host_name);
        if (interface.service_port < 0 || interface.service_port > 65535) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes(reinterpret_cast<const char*>(data), size);
    ReadAll(ReadSmbiosTable(bytes));
    ReadAll(ReadSmbiosTable(bytes, std::string_view(bytes)));
    // As the structure that is hardest to read, so that its lists are reached.
    if (size < 6) return 0;
    bytes[0] = static_cast<char>(kSmbiosHostInterface);
    bytes[4] = 0x40;
    ReadAll(ReadSmbiosTable(bytes, 1));
    return 0;
}
