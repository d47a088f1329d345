#include "transport/ipmi/hpm_components.h"

#include <algorithm>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::uint8_t kPicmgExtension = 0x2c;
constexpr std::uint8_t kPicmg = 0x00;
constexpr std::uint8_t kGetCapabilities = 0x2e;
constexpr std::uint8_t kGetProperty = 0x2f;
constexpr std::uint8_t kCurrentRevision = 0x01;
constexpr std::uint8_t kDescription = 0x02;
constexpr std::size_t kPresenceAt = 7;
constexpr std::size_t kDescriptionLength = 12;
constexpr int kMostComponents = 8;

bool IsPicmgAnswer(const RawAnswer& answer) {
    return answer.IsOk() && !answer.data.empty() && answer.data[0] == kPicmg;
}

}  // namespace

RawRequest HpmCapabilitiesRequest() {
    return {kPicmgExtension, kGetCapabilities, {kPicmg}};
}

RawRequest HpmDescriptionRequest(std::uint8_t component) {
    return {kPicmgExtension, kGetProperty, {kPicmg, component, kDescription}};
}

RawRequest HpmRevisionRequest(std::uint8_t component) {
    return {kPicmgExtension, kGetProperty, {kPicmg, component, kCurrentRevision}};
}

std::vector<std::uint8_t> ParseHpmComponents(const RawAnswer& answer) {
    std::vector<std::uint8_t> components;
    if (!IsPicmgAnswer(answer) || answer.data.size() <= kPresenceAt) return components;
    for (int n = 0; n < kMostComponents; ++n) {
        const bool is_present = (answer.data[kPresenceAt] >> n & 1) != 0;
        if (is_present) components.push_back(static_cast<std::uint8_t>(n));
    }
    return components;
}

std::string ParseHpmDescription(const RawAnswer& answer) {
    if (!IsPicmgAnswer(answer)) return {};
    const std::size_t length = std::min(answer.data.size() - 1, kDescriptionLength);
    return CleanText(std::string(answer.data.begin() + 1,
                                 answer.data.begin() + 1 + static_cast<std::ptrdiff_t>(length)));
}

std::optional<HpmRevision> ParseHpmRevision(const RawAnswer& answer) {
    if (!IsPicmgAnswer(answer) || answer.data.size() < 3) return {};
    const bool is_unknown = std::all_of(answer.data.begin() + 1, answer.data.end(),
                                        [](std::uint8_t byte) { return byte == 0xff; });
    if (is_unknown) return {};
    HpmRevision revision;
    revision.version = std::to_string(answer.data[1] & 0x7f) + "." + HexByte(answer.data[2]);
    if (answer.data.size() >= 7) {
        revision.auxiliary.assign(answer.data.begin() + 3, answer.data.begin() + 7);
    }
    return revision;
}

}  // namespace Vantix::transport
