#include "transport/ipmi/fru_requests.h"

#include <algorithm>

namespace Vantix::transport {
namespace {

constexpr std::uint8_t kStorage = 0x0a;
constexpr std::uint8_t kGetSize = 0x10;
constexpr std::uint8_t kRead = 0x11;
constexpr std::size_t kChunk = 16;
constexpr std::size_t kHighestOffset = 0xffff;

}  // namespace

RawRequest FruSizeRequest(std::uint8_t fru_id) {
    return {kStorage, kGetSize, {fru_id}};
}

std::optional<FruSize> ParseFruSize(const RawAnswer& answer) {
    if (!answer.IsOk() || answer.data.size() < 3) return {};
    FruSize size;
    size.bytes = static_cast<std::size_t>(answer.data[0] | answer.data[1] << 8);
    size.is_in_words = (answer.data[2] & 1) != 0;
    return size;
}

std::vector<RawRequest> FruReadRequests(std::uint8_t fru_id, std::size_t from, std::size_t to,
                                        bool is_in_words) {
    std::vector<RawRequest> requests;
    const std::size_t unit = is_in_words ? 2 : 1;
    for (std::size_t at = from; at < to && at / unit <= kHighestOffset; at += kChunk) {
        const std::size_t offset = at / unit;
        const std::size_t count = (std::min(kChunk, to - at) + unit - 1) / unit;
        requests.push_back(
            {kStorage,
             kRead,
             {fru_id, static_cast<std::uint8_t>(offset & 0xff),
              static_cast<std::uint8_t>(offset >> 8), static_cast<std::uint8_t>(count)}});
    }
    return requests;
}

bool AppendFruBytes(const std::vector<RawAnswer>& answers, bool is_in_words, Bytes& image) {
    for (const RawAnswer& answer : answers) {
        if (!answer.IsOk() || answer.data.empty()) return false;
        const std::size_t told = answer.data[0] * (is_in_words ? 2U : 1U);
        const std::size_t count = std::min(told, answer.data.size() - 1);
        const auto first = answer.data.begin() + 1;
        image.insert(image.end(), first, first + static_cast<std::ptrdiff_t>(count));
        if (count < kChunk) return false;
    }
    return true;
}

}  // namespace Vantix::transport
