#include "platform/disk/scsi_pages.h"

#include <algorithm>
#include <cstddef>

#include "transport/text/text_cleaning.h"

namespace Vantix::disk {
namespace {

using transport::CleanText;

constexpr std::size_t kPageHeader = 4;

std::size_t ByteAt(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
}

/// Clean text of a fixed field; empty where the bytes end inside it.
std::string Field(std::string_view bytes, std::size_t at, std::size_t length) {
    if (bytes.size() < at || bytes.size() - at < length) return {};
    return CleanText(bytes.substr(at, length));
}

/// What stands behind the header; nothing when it is another page.
std::optional<std::string_view> PageBody(std::string_view page, std::size_t code) {
    if (page.size() < kPageHeader || ByteAt(page, 1) != code) return std::nullopt;
    return page.substr(kPageHeader);
}

std::size_t LengthOf(std::string_view page) {
    return ByteAt(page, 2) << 8U | ByteAt(page, 3);
}

/// ATA keeps texts in words of two characters, the first in the upper byte.
std::string AtaField(std::string_view identify, std::size_t first_word, std::size_t words) {
    const std::size_t at = first_word * 2;
    if (identify.size() < at + words * 2) return {};
    std::string text(identify.substr(at, words * 2));
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) std::swap(text[i], text[i + 1]);
    return CleanText(text);
}

void TakeName(std::string_view header, std::string_view name, UnitNames& names) {
    constexpr std::size_t kT10 = 1;
    constexpr std::size_t kNaa = 3;
    const bool is_of_unit = (ByteAt(header, 1) >> 4U & 3U) == 0;
    const std::size_t type = ByteAt(header, 1) & 0xfU;
    if (!is_of_unit || name.empty()) return;
    if (type == kNaa) names.naa_formats.push_back(static_cast<int>(ByteAt(name, 0) >> 4U));
    if (type == kT10 && names.t10_name.empty()) names.t10_name = CleanText(name);
}

}  // namespace

std::optional<InquiryData> ReadInquiry(std::string_view bytes) {
    constexpr std::size_t kThroughRevision = 36;
    if (bytes.size() < kThroughRevision) return std::nullopt;
    InquiryData data;
    data.device_type = static_cast<int>(ByteAt(bytes, 0) & 0x1fU);
    data.vendor = Field(bytes, 8, 8);
    data.model = Field(bytes, 16, 16);
    data.revision = Field(bytes, 32, 4);
    return data;
}

std::string ReadSerialPage(std::string_view page) {
    const auto body = PageBody(page, 0x80);
    return body ? Field(*body, 0, LengthOf(page)) : std::string();
}

UnitNames ReadNamesPage(std::string_view page) {
    UnitNames names;
    const auto body = PageBody(page, 0x83);
    if (!body) return names;
    std::string_view rest = body->substr(0, LengthOf(page));
    while (rest.size() >= kPageHeader) {
        const std::size_t length = ByteAt(rest, 3);
        if (rest.size() - kPageHeader < length) break;
        TakeName(rest.substr(0, kPageHeader), rest.substr(kPageHeader, length), names);
        rest.remove_prefix(kPageHeader + length);
    }
    return names;
}

std::optional<AtaTexts> ReadAtaPage(std::string_view page) {
    constexpr std::size_t kCommand = 56;
    constexpr std::size_t kIdentifyDevice = 0xec;
    constexpr std::size_t kIdentifyData = 60;
    constexpr std::size_t kThroughModel = kIdentifyData + 47 * 2;
    if (page.size() < kThroughModel || !PageBody(page, 0x89)) return std::nullopt;
    if (ByteAt(page, kCommand) != kIdentifyDevice) return std::nullopt;
    const std::string_view identify = page.substr(kIdentifyData);
    AtaTexts texts;
    texts.serial = AtaField(identify, 10, 10);
    texts.firmware = AtaField(identify, 23, 4);
    texts.model = AtaField(identify, 27, 20);
    if (texts.model.empty() && texts.firmware.empty()) return std::nullopt;
    return texts;
}

}  // namespace Vantix::disk
