#include "platform/disk/storage_queries.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "transport/text/text_cleaning.h"

namespace Vantix::disk {
namespace {

// STORAGE_PROPERTY_ID
constexpr std::uint32_t kDeviceProperty = 0;
constexpr std::uint32_t kAdapterProperty = 1;
constexpr std::uint32_t kDeviceIdProperty = 2;
constexpr std::uint32_t kAdapterProtocolProperty = 49;

// STORAGE_PROPERTY_QUERY: property, kind of query (0: standard), parameters.
constexpr std::size_t kQueryParametersAt = 8;
constexpr std::size_t kShortestQuery = 12;

// Version and size stand before every descriptor's own fields.
constexpr std::size_t kDescriptorHeader = 8;
constexpr std::size_t kProtocolDataLength = 40;  // of STORAGE_PROTOCOL_SPECIFIC_DATA
constexpr std::size_t kIdentifyLength = 4096;

void PutNumber(std::uint32_t number, std::size_t at, std::string& bytes) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<char>(number >> (8 * i) & 0xffU);
    }
}

std::uint32_t OctetAt(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
}

std::uint32_t WordAt(std::string_view bytes, std::size_t at) {
    return OctetAt(bytes, at) | OctetAt(bytes, at + 1) << 8U;
}

std::uint32_t NumberAt(std::string_view bytes, std::size_t at) {
    return WordAt(bytes, at) | WordAt(bytes, at + 2) << 16U;
}

std::string StandardQuery(std::uint32_t property, std::size_t length) {
    std::string query(length, '\0');
    PutNumber(property, 0, query);
    return query;
}

/// The text, ended by a NUL, at the offset that stands at `place`. No text: 0 or all bits set.
std::string TextAt(std::string_view bytes, std::size_t place, std::size_t first_possible) {
    const std::size_t at = NumberAt(bytes, place);
    if (at < first_possible || at >= bytes.size()) return {};
    const std::size_t end = bytes.find('\0', at);
    if (end == std::string_view::npos) return {};
    return transport::CleanText(bytes.substr(at, end - at));
}

}  // namespace

std::optional<int> DiskNumberOf(std::string_view device_name) {
    constexpr std::string_view kStart = "PhysicalDrive";
    if (device_name.substr(0, kStart.size()) != kStart) return std::nullopt;
    const std::string_view digits = device_name.substr(kStart.size());
    int number = -1;
    const char* end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end || number < 0) return std::nullopt;
    return number;
}

std::string DeviceQuery() {
    return StandardQuery(kDeviceProperty, kShortestQuery);
}

std::string AdapterQuery() {
    return StandardQuery(kAdapterProperty, kShortestQuery);
}

std::string NamesQuery() {
    return StandardQuery(kDeviceIdProperty, kShortestQuery);
}

std::string IdentifyQuery() {
    constexpr std::uint32_t kNvme = 3;
    constexpr std::uint32_t kIdentify = 1;
    constexpr std::uint32_t kController = 1;
    std::string query = StandardQuery(kAdapterProtocolProperty,
                                      kQueryParametersAt + kProtocolDataLength + kIdentifyLength);
    PutNumber(kNvme, kQueryParametersAt, query);
    PutNumber(kIdentify, kQueryParametersAt + 4, query);
    PutNumber(kController, kQueryParametersAt + 8, query);
    PutNumber(kProtocolDataLength, kQueryParametersAt + 16, query);
    PutNumber(kIdentifyLength, kQueryParametersAt + 20, query);
    return query;
}

std::optional<StorageDevice> ReadStorageDevice(std::string_view answer) {
    constexpr std::size_t kFixedPart = 36;
    if (answer.size() < kFixedPart) return std::nullopt;
    StorageDevice device;
    device.device_type = static_cast<int>(OctetAt(answer, 8) & 0x1fU);
    device.vendor = TextAt(answer, 12, kFixedPart);
    device.model = TextAt(answer, 16, kFixedPart);
    device.revision = TextAt(answer, 20, kFixedPart);
    device.serial = TextAt(answer, 24, kFixedPart);
    device.bus = static_cast<StorageBus>(OctetAt(answer, 28));
    return device;
}

StorageBus ReadAdapterBus(std::string_view answer) {
    constexpr std::size_t kBusAt = 24;
    return static_cast<StorageBus>(OctetAt(answer, kBusAt));
}

std::vector<int> ReadNaaFormats(std::string_view answer) {
    constexpr std::size_t kFirstNameAt = 12;
    constexpr std::size_t kNameAt = 16;  // STORAGE_IDENTIFIER: the name behind its fixed part
    constexpr std::uint32_t kNaa = 3;
    std::vector<int> formats;
    const std::size_t count = NumberAt(answer, kDescriptorHeader);
    std::string_view rest = answer.substr(std::min(kFirstNameAt, answer.size()));
    for (std::size_t i = 0; i < count && rest.size() > kNameAt; ++i) {
        const bool is_of_unit = NumberAt(rest, 12) == 0;
        const bool has_name = WordAt(rest, 8) > 0;
        if (is_of_unit && has_name && NumberAt(rest, 4) == kNaa) {
            formats.push_back(static_cast<int>(OctetAt(rest, kNameAt) >> 4U));
        }
        const std::size_t next = WordAt(rest, 10);
        if (next < kNameAt || next > rest.size()) break;
        rest.remove_prefix(next);
    }
    return formats;
}

std::string_view ReadIdentifyData(std::string_view answer) {
    if (answer.size() < kDescriptorHeader + kProtocolDataLength) return {};
    const std::string_view protocol_data = answer.substr(kDescriptorHeader);
    const std::size_t at = NumberAt(protocol_data, 16);
    const std::size_t length = NumberAt(protocol_data, 20);
    if (at < kProtocolDataLength || at > protocol_data.size()) return {};
    return protocol_data.substr(at, std::min(length, kIdentifyLength));
}

}  // namespace Vantix::disk
