#include "transport/redfish/odata_link.h"

#include <cstddef>
#include <vector>

#include "transport/text/ascii_case.h"

namespace Vantix::transport {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsHex(char c) {
    return IsAsciiDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsLegal(char c) {
    constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=";
    return IsLetter(c) || IsAsciiDigit(c) || kMarks.find(c) != std::string_view::npos;
}

/// The raw text cut into what RFC 3986 calls path, query and fragment.
struct Pieces {
    std::string_view path;
    std::string_view query;     ///< with its '?'
    std::string_view fragment;  ///< without its '#'
    bool has_host = false;
};

std::size_t HostStart(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && (IsLetter(text[at]) || (at > 0 && IsAsciiDigit(text[at])))) ++at;
    if (at > 0 && text.substr(at, 3) == "://") return at + 3;
    // Two slashes at the start mean a host by the standard; services that double slashes mean the
    // path of their root.
    const bool is_doubled = FoldLink(text.substr(0, 10)) == "//redfish/";
    return text.substr(0, 2) == "//" && !is_doubled ? 2 : 0;
}

Pieces Split(std::string_view text) {
    Pieces pieces;
    text = Trimmed(text);
    const std::size_t host = HostStart(text);
    if (host > 0) {
        pieces.has_host = true;
        text.remove_prefix(host);
        const std::size_t end = text.find_first_of("/?#");
        text.remove_prefix(end == std::string_view::npos ? text.size() : end);
    }
    const std::size_t hash = text.find('#');
    if (hash != std::string_view::npos) pieces.fragment = text.substr(hash + 1);
    text = text.substr(0, hash);
    const std::size_t mark = text.find('?');
    if (mark != std::string_view::npos) pieces.query = text.substr(mark);
    pieces.path = text.substr(0, mark);
    return pieces;
}

void AppendSegments(std::string_view path, std::vector<std::string_view>& segments) {
    while (!path.empty()) {
        const std::size_t end = path.find('/');
        const std::string_view segment = path.substr(0, end);
        if (segment == "..") {
            if (!segments.empty()) segments.pop_back();
        } else if (!segment.empty() && segment != ".") {
            segments.push_back(segment);
        }
        path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
    }
}

bool IsRootless(std::string_view path) {
    return FoldLink(path.substr(0, 8)) == "redfish/";
}

std::string ResolvedPath(const Pieces& pieces, std::string_view base) {
    std::vector<std::string_view> segments;
    const std::string_view base_path = Split(base).path;
    if (pieces.path.empty() && !pieces.has_host) {
        AppendSegments(base_path, segments);
    } else if (!pieces.has_host && pieces.path.front() != '/' && !IsRootless(pieces.path)) {
        const std::size_t slash = base_path.rfind('/');
        AppendSegments(base_path.substr(0, slash == std::string_view::npos ? 0 : slash), segments);
    }
    AppendSegments(pieces.path, segments);
    std::string path;
    for (const std::string_view segment : segments) path.append("/").append(segment);
    return EncodeIllegalBytes(path.empty() ? "/" : path);
}

}  // namespace

std::string LinkPath(std::string_view text, std::string_view base) {
    return SplitLink(text, base).path;
}

std::string LinkTarget(std::string_view text, std::string_view base) {
    if (Trimmed(text).empty()) return {};
    const Pieces pieces = Split(text);
    return ResolvedPath(pieces, base) + EncodeIllegalBytes(pieces.query);
}

LinkReference SplitLink(std::string_view text, std::string_view base) {
    if (Trimmed(text).empty()) return {};
    const Pieces pieces = Split(text);
    return {ResolvedPath(pieces, base), std::string(pieces.fragment)};
}

std::string EncodeIllegalBytes(std::string_view text) {
    constexpr char kHexDigits[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const bool is_encoded =
            text[at] == '%' && at + 2 < text.size() && IsHex(text[at + 1]) && IsHex(text[at + 2]);
        if (is_encoded || IsLegal(text[at])) {
            encoded += text[at];
        } else {
            encoded += {'%', kHexDigits[byte >> 4U], kHexDigits[byte & 0x0FU]};
        }
    }
    return encoded;
}

std::string FoldLink(std::string_view path) {
    std::string folded(path);
    for (char& c : folded) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
}

bool IsSameLink(std::string_view left, std::string_view right) {
    return FoldLink(LinkPath(left)) == FoldLink(LinkPath(right));
}

std::string LastSegment(std::string_view path) {
    while (!path.empty() && path.back() == '/') path.remove_suffix(1);
    const std::size_t slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

}  // namespace Vantix::transport
