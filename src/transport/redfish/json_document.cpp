#include "transport/redfish/json_document.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport::json {
namespace {

namespace bj = boost::json;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r\n";

struct Attempt {
    bj::value value;
    JsonErrorKind kind = JsonErrorKind::kNone;
    std::string reason;
};

bool StartsAnotherDocument(std::string_view rest) {
    const std::size_t first = rest.find_first_not_of(kBlanks);
    return first != std::string_view::npos && (rest[first] == '{' || rest[first] == '[');
}

JsonErrorKind KindOf(const bj::error_code& error) {
    return error == bj::error::too_deep ? JsonErrorKind::kTooDeep : JsonErrorKind::kSyntax;
}

Attempt ParseStrictly(std::string_view text, const JsonLimits& limits) {
    bj::parse_options options;
    options.max_depth = limits.max_depth;
    bj::parser parser(bj::storage_ptr(), options);
    bj::error_code error;
    const std::size_t used = parser.write_some(text.data(), text.size(), error);
    if (error) {
        return {nullptr, KindOf(error), error.message()};
    }
    const std::string_view rest = text.substr(used);
    if (rest.find_first_not_of(kBlanks) == std::string_view::npos) {
        return {parser.release(), JsonErrorKind::kNone, {}};
    }
    if (StartsAnotherDocument(rest)) {
        return {nullptr, JsonErrorKind::kTrailingDocument, "a second document follows the first"};
    }
    return {nullptr, JsonErrorKind::kSyntax, "text follows the document"};
}

// The library reports failures by code; what is left to throw is a lack of memory.
Attempt Parse(std::string_view text, const JsonLimits& limits) {
    try {
        return ParseStrictly(text, limits);
    } catch (const std::exception& failure) {
        return {nullptr, JsonErrorKind::kTooLarge, failure.what()};
    }
}

// The code unit of a \uXXXX escape at `at`; nothing when there is none.
std::optional<unsigned> EscapedUnit(std::string_view text, std::size_t at) {
    if (text.substr(at, 2) != "\\u" || text.size() - at < 6) {
        return std::nullopt;
    }
    unsigned unit = 0;
    for (const char letter : text.substr(at + 2, 4)) {
        const std::size_t digit = std::string_view("0123456789abcdefABCDEF").find(letter);
        if (digit == std::string_view::npos) {
            return std::nullopt;
        }
        unit = unit * 16 + static_cast<unsigned>(digit < 16 ? digit : digit - 6);
    }
    return unit;
}

// Copies the escape sequence at `at`, halves of surrogate pairs as U+FFFD; returns its length.
std::size_t CopyEscape(std::string_view text, std::size_t at, std::string& clean) {
    const std::optional<unsigned> unit = EscapedUnit(text, at);
    if (!unit || *unit < 0xD800U || *unit > 0xDFFFU) {
        // Only the backslash and a plain letter: what follows is looked at on its own.
        const bool has_plain_letter =
            at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) - 0x20U < 0x5FU;
        const std::size_t length = has_plain_letter ? 2 : 1;
        clean += text.substr(at, length);
        return length;
    }
    const unsigned low = *unit < 0xDC00U ? EscapedUnit(text, at + 6).value_or(0) : 0;
    if (low >= 0xDC00U && low <= 0xDFFFU) {
        clean += text.substr(at, 12);
        return 12;
    }
    clean += "\\ufffd";
    return 6;
}

std::string Clean(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte == '\\') {
            at += CopyEscape(text, at, clean);
            continue;
        }
        const std::size_t length = Utf8SequenceLength(text, at);
        if (byte < 0x20U) {
            clean += ' ';
        } else if (length == 0) {
            clean += kReplacementCharacter;
        } else {
            clean += text.substr(at, length);
        }
        at += std::max<std::size_t>(length, 1);
    }
    return clean;
}

JsonDocument Refuse(JsonErrorKind kind, const std::string& why, std::string_view bytes) {
    JsonDocument document;
    document.kind = kind;
    document.error = why;
    const std::string start = CleanStart(bytes);
    if (!start.empty()) {
        document.error += ": " + start;
    }
    return document;
}

JsonDocument Accept(Attempt attempt, bool was_cleaned) {
    JsonDocument document;
    document.value = std::move(attempt.value);
    document.was_cleaned = was_cleaned;
    return document;
}

JsonDocument RefuseAttempt(const Attempt& attempt, std::string_view bytes) {
    switch (attempt.kind) {
        case JsonErrorKind::kTooDeep:
            return Refuse(attempt.kind, "the JSON text is nested too deeply", bytes);
        case JsonErrorKind::kTooLarge:
            return Refuse(attempt.kind, "the JSON text does not fit into memory", bytes);
        default:
            return Refuse(attempt.kind, "the answer is not valid JSON (" + attempt.reason + ")",
                          bytes);
    }
}

}  // namespace

JsonDocument ParseJson(std::string_view bytes, const JsonLimits& limits) {
    if (bytes.size() > limits.max_bytes) {
        return Refuse(JsonErrorKind::kTooLarge,
                      "the answer has more than " + std::to_string(limits.max_bytes) + " bytes",
                      bytes);
    }
    Attempt strict = Parse(bytes, limits);
    if (strict.kind == JsonErrorKind::kNone) {
        return Accept(std::move(strict), false);
    }
    const std::string_view text =
        bytes.substr(bytes.substr(0, 3) == kByteOrderMark ? kByteOrderMark.size() : 0);
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return Refuse(JsonErrorKind::kEmpty, "the answer is empty", {});
    }
    if (text[first] == '<') {
        return Refuse(JsonErrorKind::kHtml, "the answer is HTML, not JSON", text);
    }
    if (strict.kind == JsonErrorKind::kTooDeep) {
        return RefuseAttempt(strict, text);
    }
    Attempt second = Parse(Clean(text), limits);
    if (second.kind == JsonErrorKind::kNone) {
        return Accept(std::move(second), true);
    }
    return RefuseAttempt(second, text);
}

}  // namespace Vantix::transport::json
