#include "platform/connection/target_address.h"

#include <algorithm>
#include <charconv>

#include "transport/http/url_text.h"

namespace Vantix::VantixConnection {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
constexpr std::string_view kLettersAndDigits =
    "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

bool ConsistsOf(std::string_view text, std::string_view letters) {
    return !text.empty() && text.find_first_not_of(letters) == std::string_view::npos;
}

TargetAddressResult Refuse(std::string_view why) {
    return {std::nullopt, std::string(why)};
}

bool HasForeignBytes(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char letter) {
        const auto byte = static_cast<unsigned char>(letter);
        return byte <= 0x20 || byte >= 0x7F;
    });
}

std::optional<int> ParseNumber(std::string_view text, int most) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool is_number = ConsistsOf(text, kDigits) && result.ec == std::errc();
    return is_number && value <= most ? std::optional(value) : std::nullopt;
}

bool IsIpv4(std::string_view text) {
    for (int part = 0; part < 4; ++part) {
        const std::size_t end = std::min(text.find('.'), text.size());
        const std::string_view number = text.substr(0, end);
        if (number.size() > 3 || !ParseNumber(number, 255)) {
            return false;
        }
        const bool is_last = part == 3;
        if (is_last != (end == text.size())) {
            return false;
        }
        text.remove_prefix(is_last ? end : end + 1);
    }
    return true;
}

// The number of 16-bit groups in a part of an IPv6 address without "::"; -1 when malformed.
int CountGroups(std::string_view text, bool may_end_in_ipv4) {
    int groups = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(':'), text.size());
        const std::string_view group = text.substr(0, end);
        const bool is_last = end == text.size();
        if (is_last && may_end_in_ipv4 && group.find('.') != std::string_view::npos) {
            return IsIpv4(group) ? groups + 2 : -1;
        }
        if (group.size() > 4 || !ConsistsOf(group, kHexDigits) || end + 1 == text.size()) {
            return -1;
        }
        ++groups;
        text.remove_prefix(is_last ? end : end + 1);
    }
    return groups;
}

bool IsIpv6Digits(std::string_view text) {
    const std::size_t gap = text.find("::");
    if (gap == std::string_view::npos) {
        return CountGroups(text, true) == 8;
    }
    const int before = CountGroups(text.substr(0, gap), false);
    const int after = CountGroups(text.substr(gap + 2), true);
    return before >= 0 && after >= 0 && before + after <= 7;
}

bool IsIpv6(std::string_view text) {
    const std::size_t percent = text.find('%');
    if (percent == std::string_view::npos) {
        return IsIpv6Digits(text);
    }
    const std::string zone_letters = std::string(kLettersAndDigits) + "-._~";
    return IsIpv6Digits(text.substr(0, percent)) &&
           ConsistsOf(text.substr(percent + 1), zone_letters);
}

bool IsLabel(std::string_view label) {
    const std::string letters = std::string(kLettersAndDigits) + "-_";
    return label.size() <= 63 && ConsistsOf(label, letters) && label.front() != '-' &&
           label.back() != '-';
}

bool IsName(std::string_view text) {
    if (!text.empty() && text.back() == '.') {
        text.remove_suffix(1);  // fully qualified
    }
    if (text.empty() || text.size() > 253) {
        return false;
    }
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find('.', start), text.size());
        if (!IsLabel(text.substr(start, end - start))) {
            return false;
        }
        start = end + 1;
    }
    return true;
}

bool IsNameOrIpv4(std::string_view text) {
    // Digits and dots alone are meant as an IPv4 address; a resolver would guess at "10.1".
    return ConsistsOf(text, "0123456789.") ? IsIpv4(text) : IsName(text);
}

bool StartsWithScheme(std::string_view text, std::string_view scheme) {
    return text.size() >= scheme.size() &&
           std::equal(scheme.begin(), scheme.end(), text.begin(), [](char wanted, char given) {
               const bool is_capital = given >= 'A' && given <= 'Z';
               return wanted == (is_capital ? static_cast<char>(given - 'A' + 'a') : given);
           });
}

struct HostAndPort {
    std::string_view host;
    std::string_view port;
    bool has_port = false;
    bool is_ipv6 = false;
};

std::optional<HostAndPort> SplitBracketed(std::string_view text) {
    const std::size_t end = text.find(']');
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    HostAndPort parts{text.substr(1, end - 1), {}, false, true};
    const std::string_view rest = text.substr(end + 1);
    if (!rest.empty() && rest.front() != ':') {
        return std::nullopt;
    }
    parts.has_port = !rest.empty();
    parts.port = rest.substr(parts.has_port ? 1 : 0);
    return parts;
}

std::optional<HostAndPort> Split(std::string_view text) {
    if (!text.empty() && text.front() == '[') {
        return SplitBracketed(text);
    }
    const auto colons = std::count(text.begin(), text.end(), ':');
    if (colons > 1) {
        return HostAndPort{text, {}, false, true};
    }
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return HostAndPort{text, {}, false, false};
    }
    return HostAndPort{text.substr(0, colon), text.substr(colon + 1), true, false};
}

// "%25" of a URL back to "%".
std::string DecodeZone(std::string_view host) {
    const std::size_t percent = host.find("%25");
    std::string decoded(host);
    if (percent != std::string_view::npos) {
        decoded.erase(percent + 1, 2);
    }
    return decoded;
}

TargetAddressResult ParseHostAndPort(std::string user, std::string_view text, bool is_url) {
    const std::optional<HostAndPort> parts = Split(text);
    if (!parts) {
        return Refuse("the address has a bracket too many or too few");
    }
    if (parts->host.empty()) {
        return Refuse("the address names no host");
    }
    TargetAddress address{std::move(user), std::string(parts->host), 0};
    if (parts->is_ipv6 && is_url) {
        address.host = DecodeZone(parts->host);
    }
    if (parts->is_ipv6 && !IsIpv6(address.host)) {
        return Refuse("the host is not a valid IPv6 address");
    }
    if (!parts->is_ipv6 && !IsNameOrIpv4(address.host)) {
        return Refuse("the host is neither a name nor an IP address");
    }
    const std::optional<int> port = ParseNumber(parts->port, 65535);
    if (parts->has_port && port.value_or(0) == 0) {
        return Refuse("the port is not a number from 1 to 65535");
    }
    address.port = port.value_or(0);
    return {std::move(address), {}};
}

}  // namespace

TargetAddressResult ParseTargetAddress(std::string_view text) {
    if (text.empty()) {
        return Refuse("the address is empty");
    }
    if (HasForeignBytes(text)) {
        return Refuse("the address contains blanks, control characters or non-ASCII letters");
    }
    const bool is_url = StartsWithScheme(text, "https://");
    if (!is_url && text.find("://") != std::string_view::npos) {
        return Refuse("the address has a scheme other than https");
    }
    if (is_url) {
        text.remove_prefix(std::string_view("https://").size());
    }
    const std::size_t at = text.rfind('@');
    const std::string_view user = at == std::string_view::npos ? "" : text.substr(0, at);
    if (user.find(':') != std::string_view::npos) {
        return Refuse("the address contains a password: use one of the password options instead");
    }
    if (at != std::string_view::npos) {
        text.remove_prefix(at + 1);
        if (user.empty()) {
            return Refuse("the user name before the @ is empty");
        }
    }
    if (is_url && !text.empty() && text.back() == '/') {
        text.remove_suffix(1);
    }
    if (text.find_first_of("/?#") != std::string_view::npos) {
        return Refuse("the address has a path: only host and port are wanted");
    }
    return ParseHostAndPort(std::string(user), text, is_url);
}

std::string HostForUrl(std::string_view host) {
    return transport::UrlHost(host);
}

}  // namespace Vantix::VantixConnection
