// Any bytes as the content of a FRU device: read without a crash, and every text that comes out is
// clean.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "transport/ipmi/fru_data.h"
#include "transport/ipmi/fru_text.h"

namespace {

using Vantix::transport::Bytes;
using Vantix::transport::FruData;

constexpr std::size_t kLongestText = 3 * 63;

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    if (std::any_of(text.begin(), text.end(), is_control)) std::abort();
    if (text.size() > kLongestText) std::abort();
}

void RequireClean(const FruData& data) {
    for (const std::string* text :
         {&data.chassis_part_number, &data.chassis_serial_number, &data.board_manufacturer,
          &data.board_name, &data.board_serial_number, &data.board_part_number,
          &data.product_manufacturer, &data.product_name, &data.product_part_number,
          &data.product_version, &data.product_serial_number}) {
        RequireClean(*text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes image(data, data + size);
    RequireClean(Vantix::transport::ReadFruData(image));
    if (Vantix::transport::FruBytesNeeded(image) < 8) std::abort();
    RequireClean(Vantix::transport::ReadFruField(image, 0, image.size(), true).text);
    RequireClean(Vantix::transport::ReadFruField(image, 0, image.size(), false).text);
    // With a header that is right, so that the areas behind it are reached.
    if (size < 8) return 0;
    image[0] = 1;
    image[7] = 0;
    unsigned sum = 0;
    for (int i = 0; i < 8; ++i) sum += image[static_cast<std::size_t>(i)];
    image[7] = static_cast<std::uint8_t>(0U - sum);
    RequireClean(Vantix::transport::ReadFruData(image));
    return 0;
}
