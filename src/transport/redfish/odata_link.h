// Links of a service brought to one spelling, so that they can be asked for and compared.
//
// Services write the same resource relative, absolute, under another host name, with a trailing or
// a doubled slash, with raw blanks, or in another letter case. Host names in links are dropped on
// purpose: a scan speaks to the one host it logged in to. Deliberately not here: fetching.
#pragma once

#include <string>
#include <string_view>

namespace Vantix::transport {

/// The path of the resource: no scheme, host, query or fragment, no doubled and no trailing slash,
/// illegal bytes percent-encoded. Relative references are resolved against `base`, the path of the
/// resource that holds the link (RFC 3986, 5.2). Empty for an empty text.
[[nodiscard]] std::string LinkPath(std::string_view text, std::string_view base = "/redfish/v1");

/// The same with the query kept: what to ask for, for example the next page of a collection.
[[nodiscard]] std::string LinkTarget(std::string_view text, std::string_view base = "/redfish/v1");

/// LinkPath, and apart from it the fragment without its '#': a JSON pointer into the resource.
struct LinkReference {
    std::string path;
    std::string pointer;  ///< empty: the whole resource
};
[[nodiscard]] LinkReference SplitLink(std::string_view text, std::string_view base = "/redfish/v1");

/// Percent-encodes the bytes that no URL may hold (blanks, quotes, controls, above 0x7E, a lone
/// '%'); what is encoded already and every legal character stay as they are.
[[nodiscard]] std::string EncodeIllegalBytes(std::string_view text);

/// A key under which spellings of different letter case meet (ASCII only).
[[nodiscard]] std::string FoldLink(std::string_view path);

/// Whether both mean the same resource: equal as LinkPath, letter case ignored.
[[nodiscard]] bool IsSameLink(std::string_view left, std::string_view right);

/// The last segment of the path; empty for the root.
[[nodiscard]] std::string LastSegment(std::string_view path);

}  // namespace Vantix::transport
