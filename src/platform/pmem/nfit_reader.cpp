#include "platform/pmem/nfit_reader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "platform/pmem/nvdimm_facts.h"
#include "platform/redfish/text_rules.h"
#include "transport/smbios/smbios_records.h"

namespace Vantix::pmem {
namespace {

constexpr std::size_t kTableHeader = 40;
constexpr std::size_t kStructureHeader = 4;
constexpr std::uint32_t kModuleMapping = 1;
constexpr std::size_t kMappingLength = 48;
constexpr std::uint32_t kControlRegion = 4;
constexpr std::size_t kShortestRegion = 32;

std::uint32_t ByteAt(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
}

std::uint32_t WordAt(std::string_view bytes, std::size_t at) {
    return ByteAt(bytes, at) | ByteAt(bytes, at + 1) << 8U;
}

std::uint32_t NumberAt(std::string_view bytes, std::size_t at) {
    return WordAt(bytes, at) | WordAt(bytes, at + 2) << 16U;
}

std::string HexDigits(std::uint32_t number) {
    std::string digits;
    for (; number != 0 || digits.empty(); number >>= 4U) {
        digits.insert(digits.begin(), "0123456789abcdef"[number & 0xfU]);
    }
    return digits;
}

/// The bytes one by one: ids and serial numbers are kept as the module's own memory has them.
std::string HexOfBytes(std::string_view bytes) {
    std::string digits;
    for (const char byte : bytes) {
        digits += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4U];
        digits += "0123456789abcdef"[static_cast<unsigned char>(byte) & 0xfU];
    }
    return digits;
}

struct Module {
    std::uint16_t physical_id = 0;
    std::uint32_t region = 0;
};

/// The structures that tell of modules.
struct Nfit {
    std::map<std::uint32_t, Module> modules;  ///< by handle; a module has a mapping or more
    std::map<std::uint32_t, std::string_view> regions;  ///< by index
};

void Take(std::string_view structure, Nfit& nfit) {
    const std::uint32_t type = WordAt(structure, 0);
    if (type == kModuleMapping && structure.size() >= kMappingLength) {
        const Module module = {static_cast<std::uint16_t>(WordAt(structure, 8)),
                               WordAt(structure, 14)};
        nfit.modules.emplace(NumberAt(structure, 4), module);
    }
    if (type == kControlRegion && structure.size() >= kShortestRegion) {
        nfit.regions.emplace(WordAt(structure, 4), structure);
    }
}

Nfit Read(std::string_view table) {
    Nfit nfit;
    constexpr std::size_t kLengthAt = 4;
    if (table.size() < kTableHeader || table.substr(0, 4) != "NFIT") return nfit;
    std::string_view rest = table.substr(0, NumberAt(table, kLengthAt));
    rest.remove_prefix(std::min(kTableHeader, rest.size()));
    while (rest.size() >= kStructureHeader) {
        const std::size_t length = WordAt(rest, 2);
        if (length < kStructureHeader || length > rest.size()) break;
        Take(rest.substr(0, length), nfit);
        rest.remove_prefix(length);
    }
    return nfit;
}

void TakeRegion(std::string_view region, NvdimmFacts& facts) {
    facts.vendor = HexOfBytes(region.substr(6, 2));
    facts.device = HexOfBytes(region.substr(8, 2));
    facts.hardware_revision = HexOfBytes(region.substr(10, 2));
    facts.serial = redfish::Known(HexOfBytes(region.substr(24, 4)));
}

}  // namespace

std::vector<VantixOptions::SoftwareIdentity_> ReadNfitModules(
    std::string_view table, const transport::SmbiosStructures& smbios) {
    const Nfit nfit = Read(table);
    const auto records = transport::ReadSmbiosMemoryDevices(smbios);
    std::vector<VantixOptions::SoftwareIdentity_> list;
    for (const auto& [handle, module] : nfit.modules) {
        NvdimmFacts facts;
        facts.name = "nvdimm" + HexDigits(handle);
        facts.record = RecordWithHandle(records, module.physical_id);
        const auto region = nfit.regions.find(module.region);
        if (region != nfit.regions.end()) TakeRegion(region->second, facts);
        list.push_back(MakeIdentity(facts));
    }
    return list;
}

}  // namespace Vantix::pmem
