#include "platform/pmem/nvdimm_reader.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/local/smbios_tables.h"
#include "platform/pmem/nvdimm_facts.h"
#include "platform/redfish/text_rules.h"
#include "transport/smbios/smbios_records.h"

namespace Vantix::pmem {
namespace {

using redfish::FirstOf;
using redfish::Known;
using transport::SmbiosMemoryDevice;
using transport::SystemRoot;
using VantixOptions::SoftwareIdentity_;

constexpr const char* kModules = "/sys/bus/nd/devices/";

bool IsNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// The digits behind `start` when nothing else follows it; else empty.
std::string_view NumberBehind(std::string_view text, std::string_view start) {
    if (text.substr(0, start.size()) != start) return {};
    const std::string_view rest = text.substr(start.size());
    return IsNumber(rest) ? rest : std::string_view();
}

/// "0x8980" to "8980"; empty when it is no such number.
std::string HexDigits(const std::string& text) {
    constexpr std::size_t kLongest = 16;
    if (text.rfind("0x", 0) != 0 || text.size() < 3 || text.size() > 2 + kLongest) return {};
    const std::string digits = text.substr(2);
    const bool is_hex = digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    return is_hex ? digits : std::string();
}

/// Reads the modules one by one.
class Reader {
  public:
    explicit Reader(const SystemRoot& root) : root_(root) {}

    std::vector<SoftwareIdentity_> Read() {
        std::vector<SoftwareIdentity_> list;
        for (const std::string& name : root_.List(kModules)) {
            // A link that leads nowhere is no module.
            const bool is_module =
                !NumberBehind(name, "nmem").empty() && root_.Exists(kModules + name);
            if (is_module) list.push_back(ReadModule(name));
        }
        return list;
    }

  private:
    SoftwareIdentity_ ReadModule(const std::string& name);
    std::string Text(const std::string& module, const char* attribute) const {
        constexpr std::size_t kLongest = 256;
        const std::string text = root_.ReadText(kModules + module + "/" + attribute);
        return text.size() <= kLongest ? text : std::string();
    }
    SmbiosMemoryDevice RecordOf(const std::string& module);
    std::string CxlText(const std::string& module, const char* attribute) const;

    const SystemRoot& root_;
    std::optional<std::vector<SmbiosMemoryDevice>> records_;  ///< read with the first module
};

SmbiosMemoryDevice Reader::RecordOf(const std::string& module) {
    if (!records_) records_ = transport::ReadSmbiosMemoryDevices(local::ReadSmbios(root_));
    const std::string digits = HexDigits(Text(module, "nfit/phys_id"));
    std::uint16_t handle = 0;
    const char* end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, handle, 16);
    if (digits.empty() || read.ec != std::errc() || read.ptr != end) return {};
    return RecordWithHandle(*records_, handle);
}

/// The kernel numbers a CXL memory device and the module that it makes of it alike.
std::string Reader::CxlText(const std::string& module, const char* attribute) const {
    const std::string provider = Text(module, "cxl/provider");
    const std::string_view number = NumberBehind(provider, "pmem");
    if (number.empty()) return {};
    return root_.ReadText("/sys/bus/cxl/devices/mem" + std::string(number) + "/" + attribute);
}

SoftwareIdentity_ Reader::ReadModule(const std::string& name) {
    NvdimmFacts facts;
    facts.name = name;
    facts.record = RecordOf(name);
    facts.vendor = HexDigits(Text(name, "nfit/vendor"));
    facts.device = HexDigits(Text(name, "nfit/device"));
    facts.serial = FirstOf(
        {Known(HexDigits(Text(name, "nfit/serial"))), Known(HexDigits(CxlText(name, "serial")))});
    facts.firmware = CxlText(name, "firmware_version");
    facts.hardware_revision = Text(name, "nfit/rev_id");
    return MakeIdentity(facts);
}

}  // namespace

std::vector<SoftwareIdentity_> ReadNvdimms(const SystemRoot& root) {
    return Reader(root).Read();
}

}  // namespace Vantix::pmem
