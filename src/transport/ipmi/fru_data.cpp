#include "transport/ipmi/fru_data.h"

#include <algorithm>
#include <initializer_list>
#include <numeric>

#include "transport/ipmi/fru_text.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kHeaderLength = 8;
constexpr std::size_t kOffsetUnit = 8;
constexpr std::size_t kChassisAt = 2;  // places of the areas' offsets in the common header
constexpr std::size_t kBoardAt = 3;
constexpr std::size_t kProductAt = 4;
constexpr std::size_t kRecordsAt = 5;
constexpr std::size_t kRecordHeaderLength = 5;
constexpr std::uint8_t kPowerSupplyRecord = 0x00;
constexpr std::uint8_t kEnglish = 25;

bool SumsToZero(const Bytes& bytes, std::size_t from, std::size_t length) {
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(from);
    return std::accumulate(first, first + static_cast<std::ptrdiff_t>(length), 0U) % 256 == 0;
}

bool HasHeader(const Bytes& image) {
    return image.size() >= kHeaderLength && (image[0] & 0x0f) == 1 &&
           SumsToZero(image, 0, kHeaderLength);
}

std::size_t OffsetOf(const Bytes& image, std::size_t place) {
    return image[place] * kOffsetUnit;
}

/// One of the areas that consist of a length, a few fixed bytes and texts.
struct Area {
    std::size_t start = 0;
    std::size_t end = 0;  // never past the image
    bool is_there = false;
};

Area FindArea(const Bytes& image, std::size_t place, FruData& data) {
    Area area;
    area.start = OffsetOf(image, place);
    if (area.start == 0 || area.start + 2 > image.size()) return area;
    const std::size_t length = image[area.start + 1] * kOffsetUnit;
    area.is_there = (image[area.start] & 0x0f) == 1 && length > 0;
    area.end = std::min(area.start + length, image.size());
    if (area.is_there && area.start + length <= image.size() &&
        !SumsToZero(image, area.start, length)) {
        data.has_bad_checksum = true;
    }
    return area;
}

/// Fills the texts that follow `fixed_bytes`, in their order; nullptr skips one.
void ReadTexts(const Bytes& image, const Area& area, std::size_t fixed_bytes, bool is_english,
               std::initializer_list<std::string*> texts) {
    std::size_t at = area.start + fixed_bytes;
    for (std::string* text : texts) {
        const FruField field = ReadFruField(image, at, area.end, is_english);
        if (!field.is_there) return;
        if (text != nullptr) *text = field.text;
        at = field.next;
    }
}

bool IsEnglish(const Bytes& image, const Area& area) {
    const std::uint8_t language = area.start + 2 < area.end ? image[area.start + 2] : 0;
    return language == 0 || language == kEnglish;
}

/// Steps through the records as long as their headers are sound.
bool HasPowerSupplyRecord(const Bytes& image) {
    std::size_t at = OffsetOf(image, kRecordsAt);
    while (at != 0 && at + kRecordHeaderLength <= image.size() &&
           SumsToZero(image, at, kRecordHeaderLength)) {
        if (image[at] == kPowerSupplyRecord && image[at + 2] > 0) return true;
        const bool is_last = (image[at + 1] & 0x80) != 0;
        if (is_last) return false;
        at += kRecordHeaderLength + image[at + 2];
    }
    return false;
}

}  // namespace

bool FruData::IsEmpty() const {
    for (const std::string* text :
         {&chassis_part_number, &chassis_serial_number, &board_manufacturer, &board_name,
          &board_serial_number, &board_part_number, &product_manufacturer, &product_name,
          &product_part_number, &product_version, &product_serial_number}) {
        if (!text->empty()) return false;
    }
    return true;
}

FruData ReadFruData(const Bytes& image) {
    FruData data;
    if (!HasHeader(image)) return data;
    const Area chassis = FindArea(image, kChassisAt, data);
    if (chassis.is_there) {
        ReadTexts(image, chassis, 3, true,
                  {&data.chassis_part_number, &data.chassis_serial_number});
    }
    const Area board = FindArea(image, kBoardAt, data);
    if (board.is_there) {
        ReadTexts(image, board, 6, IsEnglish(image, board),
                  {&data.board_manufacturer, &data.board_name, &data.board_serial_number,
                   &data.board_part_number});
    }
    const Area product = FindArea(image, kProductAt, data);
    if (product.is_there) {
        ReadTexts(image, product, 3, IsEnglish(image, product),
                  {&data.product_manufacturer, &data.product_name, &data.product_part_number,
                   &data.product_version, &data.product_serial_number});
    }
    data.is_power_supply = HasPowerSupplyRecord(image);
    return data;
}

std::size_t FruBytesNeeded(const Bytes& image) {
    std::size_t needed = kHeaderLength;
    if (!HasHeader(image)) return needed;
    for (const std::size_t place : {kChassisAt, kBoardAt, kProductAt}) {
        const std::size_t start = OffsetOf(image, place);
        if (start == 0) continue;
        const bool tells_length = start + 2 <= image.size();
        const std::size_t length = tells_length ? image[start + 1] * kOffsetUnit : kOffsetUnit;
        needed = std::max(needed, start + length);
    }
    const std::size_t records = OffsetOf(image, kRecordsAt);
    if (records != 0) needed = std::max(needed, records + kRecordHeaderLength);
    return needed;
}

}  // namespace Vantix::transport
