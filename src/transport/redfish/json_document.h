// Turns the bytes of an answer into a JSON value, or into one sentence about why not.
//
// Strict first; bytes that services in the field get wrong (a byte order mark, raw control bytes,
// bad UTF-8, halves of surrogate pairs) are cleaned and read once more. Never throws. Knows nothing
// of what the document means.
#pragma once

#include <boost/json.hpp>
#include <cstddef>
#include <string>
#include <string_view>

namespace Vantix::transport::json {

enum class JsonErrorKind {
    kNone,
    kEmpty,             ///< no bytes, or blanks only
    kSyntax,            ///< not JSON (RFC 8259)
    kHtml,              ///< a page for people, often a login page
    kTrailingDocument,  ///< a second document follows the first
    kTooDeep,
    kTooLarge
};

struct JsonLimits {
    std::size_t max_bytes = 32 * 1024 * 1024;
    std::size_t max_depth = 64;
};

struct JsonDocument {
    boost::json::value value;  ///< null unless `kind` is kNone
    JsonErrorKind kind = JsonErrorKind::kNone;
    std::string error;         ///< one sentence with the start of the text; empty when valid
    bool was_cleaned = false;  ///< valid only after cleaning: worth a warning

    [[nodiscard]] bool IsValid() const { return kind == JsonErrorKind::kNone; }
};

/// Of duplicate keys in one object the last wins.
[[nodiscard]] JsonDocument ParseJson(std::string_view bytes, const JsonLimits& limits = {});

}  // namespace Vantix::transport::json
