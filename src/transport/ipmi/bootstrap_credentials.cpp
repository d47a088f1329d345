#include "transport/ipmi/bootstrap_credentials.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Vantix::transport {
namespace {

constexpr std::uint8_t kGroupExtension = 0x2c;
constexpr std::uint8_t kGetCredentials = 0x02;
constexpr std::uint8_t kRedfishGroup = 0x52;
// Any other value would switch the giving of accounts off, until somebody resets the BMC's setting.
constexpr std::uint8_t kKeepEnabled = 0xa5;
constexpr std::size_t kUserAt = 1;
constexpr std::size_t kPasswordAt = 17;
constexpr std::size_t kFieldLength = 16;

// Fields are padded with zeros.
std::string FieldAt(const Bytes& data, std::size_t at) {
    const auto first = data.begin() + static_cast<std::ptrdiff_t>(at);
    const auto end = std::find(first, first + static_cast<std::ptrdiff_t>(kFieldLength), 0);
    return {first, end};
}

bool IsUsable(const std::string& text) {
    const auto is_printable = [](char letter) { return letter > 0x20 && letter < 0x7f; };
    return !text.empty() && std::all_of(text.begin(), text.end(), is_printable);
}

}  // namespace

RawRequest BootstrapCredentialsRequest() {
    return {kGroupExtension, kGetCredentials, {kRedfishGroup, kKeepEnabled}};
}

std::optional<BootstrapCredentials> ParseBootstrapCredentials(const RawAnswer& answer) {
    const Bytes& data = answer.data;
    if (!answer.IsOk() || data.size() < kPasswordAt + kFieldLength) return std::nullopt;
    if (data.front() != kRedfishGroup) return std::nullopt;
    BootstrapCredentials credentials{FieldAt(data, kUserAt), FieldAt(data, kPasswordAt)};
    if (!IsUsable(credentials.user) || !IsUsable(credentials.password)) return std::nullopt;
    return credentials;
}

}  // namespace Vantix::transport
