#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "platform/connection/target_address.h"
#include "platform/remote_command/remote_command.h"
#include "transport/text/ascii_case.h"

namespace Vantix {
namespace {

constexpr std::string_view kAuthorityMark = "://";
// Under this scheme the address parser reads an authority as it stands in a URI.
constexpr std::string_view kAddressScheme = "https://";

[[noreturn]] void Refuse(const std::string& why) {
    throw std::invalid_argument("The target is no valid URI: " + why + ".");
}

bool IsLetter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

bool IsScheme(std::string_view text) {
    return !text.empty() && IsLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), [](char letter) {
               return IsLetter(letter) || transport::IsAsciiDigit(letter) || letter == '+' ||
                      letter == '-' || letter == '.';
           });
}

// The byte that "%xx" at the beginning of `text` stands for.
std::optional<char> EncodedByte(std::string_view text) {
    constexpr std::size_t kLength = 3;
    if (text.size() < kLength || text.front() != '%') return std::nullopt;
    unsigned value = 0;
    const char* const end = text.data() + kLength;
    const auto read = std::from_chars(text.data() + 1, end, value, 16);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    return static_cast<char>(static_cast<unsigned char>(value));
}

std::string DecodedUser(std::string_view text) {
    std::string decoded;
    while (!text.empty()) {
        char letter = text.front();
        std::size_t length = 1;
        if (letter == '%') {
            const std::optional<char> byte = EncodedByte(text);
            if (!byte) Refuse("a percent sign in the user name is not followed by two digits");
            letter = *byte;
            length = 3;
        }
        if (static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F) {
            Refuse("the user name contains control characters");
        }
        decoded += letter;
        text.remove_prefix(length);
    }
    return decoded;
}

bool HasBareIpv6(std::string_view authority, std::string_view host) {
    return host.find(':') != std::string_view::npos &&
           authority.find('[') == std::string_view::npos;
}

}  // namespace

Uri::Uri(const std::string& text, bool strict) {
    const std::size_t mark = text.find(kAuthorityMark);
    if (mark == std::string::npos) Refuse("it has no scheme such as ssh://");
    scheme_ = text.substr(0, mark);
    if (!IsScheme(scheme_)) Refuse("its scheme is malformed");
    std::transform(scheme_.begin(), scheme_.end(), scheme_.begin(), transport::AsciiLower);
    const std::string authority = text.substr(mark + kAuthorityMark.size());
    if (authority.empty()) Refuse("the address is empty");
    const auto parsed =
        VantixConnection::ParseTargetAddress(std::string(kAddressScheme) + authority);
    if (!parsed.address) Refuse(parsed.error);
    if (strict && HasBareIpv6(authority, parsed.address->host)) {
        Refuse("an IPv6 address must stand in brackets");
    }
    user_ = DecodedUser(parsed.address->user);
    host_ = parsed.address->host;
    port_ = parsed.address->port;
}

std::string Uri::Scheme() const {
    return scheme_;
}

std::string Uri::User() const {
    return user_;
}

std::string Uri::Host() const {
    return host_;
}

int Uri::Port() const {
    return port_;
}

}  // namespace Vantix
