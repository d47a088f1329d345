#include "transport/smbios/host_interface.h"

#include <array>
#include <cstdint>

#include "transport/smbios/smbios_records.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::uint8_t kNetworkInterface = 0x40;
constexpr std::uint8_t kRedfishOverIp = 0x04;
constexpr std::size_t kDeviceAt = 6;  // behind header, interface type and length
constexpr int kUsbDeviceV2 = 4;
constexpr int kPciDeviceV2 = 5;
constexpr std::size_t kMacLength = 6;
// Places in a Redfish over IP record.
constexpr std::size_t kHostFormatAt = 0x11;
constexpr std::size_t kHostAddressAt = 0x12;
constexpr std::size_t kServiceFormatAt = 0x33;
constexpr std::size_t kServiceAddressAt = 0x34;
constexpr std::size_t kPortAt = 0x54;
constexpr std::size_t kHostNameLengthAt = 0x5a;
constexpr std::uint8_t kIpv4 = 1;
constexpr std::uint8_t kIpv6 = 2;

std::size_t Number(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<std::uint8_t>(bytes[at]) : 0;
}

std::string_view Slice(std::string_view bytes, std::size_t at, std::size_t length) {
    const std::string_view slice = at < bytes.size() ? bytes.substr(at, length) : "";
    return slice.size() == length ? slice : "";
}

std::string Hex(std::size_t number) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    do {
        text.insert(text.begin(), kDigits[number % 16]);
        number /= 16;
    } while (number > 0);
    return text;
}

std::string AddressAt(std::string_view record, std::size_t format_at, std::size_t address_at) {
    const std::size_t format = Number(record, format_at);
    if (format == kIpv4) return IpAddressText(Slice(record, address_at, 4));
    if (format == kIpv6) return IpAddressText(Slice(record, address_at, 16));
    return {};
}

std::string MacAddressOf(std::string_view device) {
    const std::size_t type = Number(device, 0);
    const std::size_t at = type == kUsbDeviceV2 ? 7 : 10;
    if (type != kUsbDeviceV2 && type != kPciDeviceV2) return {};
    std::string text;
    for (const char byte : Slice(device, at, kMacLength)) {
        const std::string digits = Hex(static_cast<std::uint8_t>(byte));
        text += (text.empty() ? "" : ":") + std::string(digits.size() < 2 ? "0" : "") + digits;
    }
    return text;
}

RedfishHostInterface ReadRecord(std::string_view device, std::string_view record) {
    RedfishHostInterface found;
    found.device_type = static_cast<int>(Number(device, 0));
    found.mac_address = MacAddressOf(device);
    found.host_address = AddressAt(record, kHostFormatAt, kHostAddressAt);
    found.service_address = AddressAt(record, kServiceFormatAt, kServiceAddressAt);
    found.service_port =
        static_cast<int>(Number(record, kPortAt) + 256 * Number(record, kPortAt + 1));
    found.service_host_name =
        CleanText(Slice(record, kHostNameLengthAt + 1, Number(record, kHostNameLengthAt)));
    return found;
}

void ReadStructure(const SmbiosStructure& structure, std::vector<RedfishHostInterface>& found) {
    const std::size_t device_length = structure.Byte(kDeviceAt - 1).value_or(0);
    const std::string_view device = structure.Slice(kDeviceAt, device_length);
    std::string_view records = structure.Slice(kDeviceAt + device_length, std::string::npos);
    const std::size_t count = Number(records, 0);
    records.remove_prefix(records.empty() ? 0 : 1);
    for (std::size_t i = 0; i < count && records.size() >= 2; ++i) {
        const std::size_t type = Number(records, 0);
        const std::string_view record = records.substr(2, Number(records, 1));
        if (type == kRedfishOverIp) found.push_back(ReadRecord(device, record));
        records.remove_prefix(2 + record.size());
    }
}

struct Run {
    std::size_t start = 0;
    std::size_t length = 0;
};

// The longest run of at least two zero groups, the first of several.
Run LongestZeroRun(const std::array<std::size_t, 8>& groups) {
    Run longest{0, 1};
    Run current;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (groups[i] != 0) continue;
        const bool goes_on = current.length > 0 && current.start + current.length == i;
        current = goes_on ? Run{current.start, current.length + 1} : Run{i, 1};
        if (current.length > longest.length) longest = current;
    }
    return longest.length > 1 ? longest : Run{groups.size(), 0};
}

std::string Ipv6Text(std::string_view bytes) {
    std::array<std::size_t, 8> groups{};
    for (std::size_t i = 0; i < groups.size(); ++i) {
        groups[i] = 256 * Number(bytes, 2 * i) + Number(bytes, 2 * i + 1);
    }
    const Run zeros = LongestZeroRun(groups);
    std::string text;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (i == zeros.start) text += "::";
        if (i >= zeros.start && i < zeros.start + zeros.length) continue;
        if (!text.empty() && text.back() != ':') text += ':';
        text += Hex(groups[i]);
    }
    return text;
}

}  // namespace

std::vector<RedfishHostInterface> ReadRedfishHostInterfaces(const SmbiosStructures& structures) {
    std::vector<RedfishHostInterface> found;
    for (const SmbiosStructure& structure : structures) {
        const bool is_network =
            structure.type == kSmbiosHostInterface && structure.Byte(4) == kNetworkInterface;
        if (is_network) ReadStructure(structure, found);
    }
    return found;
}

std::string IpAddressText(std::string_view bytes) {
    if (bytes.find_first_not_of('\0') == std::string_view::npos) return {};
    if (bytes.size() == 16) return Ipv6Text(bytes);
    if (bytes.size() != 4) return {};
    std::string text = std::to_string(Number(bytes, 0));
    for (std::size_t i = 1; i < 4; ++i) text += "." + std::to_string(Number(bytes, i));
    return text;
}

}  // namespace Vantix::transport
