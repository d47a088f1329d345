#include "platform/pci/vpd.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "transport/text/ascii_case.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::pci {
namespace {

constexpr unsigned kLargeResource = 0x80;
constexpr unsigned kIdentifierTag = 0x82;
constexpr unsigned kReadOnlyTag = 0x90;
constexpr unsigned kEndTag = 0x0F;  // name of the small resource
constexpr std::size_t kFieldHead = 3;

struct Resource {
    unsigned tag = 0;  ///< first byte of a large resource, name of a small one
    std::size_t start = 0;
    std::size_t length = 0;
    [[nodiscard]] std::size_t End() const { return start + length; }
};

unsigned ByteAt(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
}

bool IsBlank(unsigned first) {
    return first == 0x00 || first == 0xFF;
}

// Nothing where the head is not there yet; its content may reach past the bytes.
std::optional<Resource> ResourceAt(std::string_view bytes, std::size_t at) {
    const unsigned first = ByteAt(bytes, at);
    if ((first & kLargeResource) == 0) return Resource{first >> 3U, at + 1, first & 7U};
    if (at + 3 > bytes.size()) return std::nullopt;
    return Resource{first, at + 3, ByteAt(bytes, at + 1) | ByteAt(bytes, at + 2) << 8U};
}

bool IsKeyword(std::string_view keyword) {
    return std::all_of(keyword.begin(), keyword.end(), [](char letter) {
        return (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
    });
}

// All bytes from the first one to the checksum add up to zero.
bool SumsToZero(std::string_view bytes) {
    std::uint8_t sum = 0;
    for (const char byte : bytes) {
        sum = static_cast<std::uint8_t>(sum + static_cast<unsigned char>(byte));
    }
    return sum == 0;
}

void ReadFields(std::string_view bytes, const Resource& list, Vpd& vpd) {
    const std::size_t end = std::min(list.End(), bytes.size());
    for (std::size_t at = list.start; at + kFieldHead <= end;) {
        const std::string_view keyword = bytes.substr(at, 2);
        const std::size_t length = ByteAt(bytes, at + 2);
        const std::size_t start = at + kFieldHead;
        if (start + length > end || !IsKeyword(keyword)) return;
        at = start + length;
        if (keyword == "RV") {
            vpd.has_checksum = length > 0;
            vpd.is_checksum_right = length > 0 && SumsToZero(bytes.substr(0, start + 1));
            return;
        }
        vpd.read_only.emplace(keyword, transport::CleanText(bytes.substr(start, length)));
    }
}

bool IsAlphanumeric(char letter) {
    return (letter >= '0' && letter <= '9') || ((letter | 0x20) >= 'a' && (letter | 0x20) <= 'z');
}

// Digits with points in them come first; what follows a blank or comma may say more.
bool LooksLikeVersion(std::string_view text) {
    std::string_view word = text.substr(0, text.find_first_of(" ,;("));
    if (!word.empty() && (word.front() | 0x20) == 'v') word.remove_prefix(1);
    const std::size_t point = word.find('.');
    return point != std::string_view::npos && point + 1 < word.size() &&
           transport::IsAsciiDigit(word.front()) && IsAlphanumeric(word[point + 1]) &&
           std::all_of(word.begin(), word.end(), [](char letter) {
               return IsAlphanumeric(letter) || letter == '.' || letter == '-' || letter == '_';
           });
}

std::string VersionIn(const Vpd& vpd, const std::string& keyword) {
    constexpr std::string_view kFamilyFirmware = "FFV";
    const auto field = vpd.read_only.find(keyword);
    if (field == vpd.read_only.end()) return {};
    std::string_view text = field->second;
    if (text.substr(0, kFamilyFirmware.size()) == kFamilyFirmware) {
        text.remove_prefix(kFamilyFirmware.size());
    }
    return LooksLikeVersion(text) ? std::string(text) : std::string();
}

}  // namespace

Vpd ParseVpd(std::string_view bytes) {
    bytes = bytes.substr(0, kMaxVpd);
    Vpd vpd;
    for (std::size_t at = 0; at < bytes.size();) {
        vpd.is_finished = IsBlank(ByteAt(bytes, at));
        const std::optional<Resource> resource = ResourceAt(bytes, at);
        if (vpd.is_finished || !resource) return vpd;
        const bool is_whole = resource->End() <= bytes.size();
        if (resource->tag == kIdentifierTag && is_whole) {
            vpd.identifier = transport::CleanText(bytes.substr(resource->start, resource->length));
        }
        if (resource->tag == kReadOnlyTag) ReadFields(bytes, *resource, vpd);
        vpd.is_finished = resource->tag == kEndTag || (resource->tag == kReadOnlyTag && is_whole);
        if (vpd.is_finished) return vpd;
        at = resource->End();
    }
    vpd.is_finished = bytes.size() == kMaxVpd;
    return vpd;
}

std::string FirmwareVersionOf(const Vpd& vpd) {
    if (vpd.has_checksum && !vpd.is_checksum_right) return {};
    for (const char* keyword : {"RM", "LL", "RL", "V0", "V1", "VA"}) {
        std::string version = VersionIn(vpd, keyword);
        if (!version.empty()) return version;
    }
    for (const auto& [keyword, value] : vpd.read_only) {
        if (keyword.front() != 'V') continue;
        std::string version = VersionIn(vpd, keyword);
        if (!version.empty()) return version;
    }
    return {};
}

}  // namespace Vantix::pci
