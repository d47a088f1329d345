#include "tarsel/common_result.h"

#include "platform/log/utc_time.h"

namespace tarsel {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

// Length of the well-formed UTF-8 sequence at `at` (RFC 3629), 0 when there is none.
std::size_t SequenceLength(const std::string& text, std::size_t at) {
    const auto byte = [&text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const auto is_tail = [&byte](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
    const unsigned first = byte(at);
    const unsigned second = byte(at + 1);
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first < 0xE0) return is_tail(at + 1) ? 2 : 0;
    if (first >= 0xE0 && first < 0xF0) {
        const bool is_wrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F);
        return !is_wrong && is_tail(at + 1) && is_tail(at + 2) ? 3 : 0;
    }
    if (first >= 0xF0 && first < 0xF5) {
        const bool is_wrong = (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
        return !is_wrong && is_tail(at + 1) && is_tail(at + 2) && is_tail(at + 3) ? 4 : 0;
    }
    return 0;
}

std::string EscapedLetter(char letter) {
    switch (letter) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        default:
            break;
    }
    const auto byte = static_cast<unsigned char>(letter);
    const bool is_control = (byte < 0x20 && letter != '\n' && letter != '\t') || byte == 0x7F;
    return is_control ? " " : std::string(1, letter);
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = SequenceLength(text, i);
        if (length == 0) {
            escaped += kReplacement;
        } else if (length == 1) {
            escaped += EscapedLetter(text[i]);
        } else {
            escaped += text.substr(i, length);
        }
        i += length == 0 ? 1 : length;
    }
    return escaped;
}

std::string Element(const std::string& indent, const std::string& name, const std::string& text) {
    return indent + "<" + name + ">" + Escaped(text) + "</" + name + ">\n";
}

std::string SourceElement(const Vantix::VantixConnection::SourceStatus& status) {
    const std::string indent = "\t\t\t";
    std::string xml = "\t\t<SOURCE>\n";
    xml += Element(indent, "NAME", status.source);
    xml += Element(indent, "STATE", Vantix::VantixConnection::SourceStateText(status.state));
    xml += Element(indent, "READ", std::to_string(status.items_read));
    xml += Element(indent, "FAILED", std::to_string(status.items_failed));
    xml += Element(indent, "DETAIL", status.detail);
    return xml + "\t\t</SOURCE>\n";
}

}  // namespace

std::string CommonResultXml(const CommonResult& result) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<RESULT>\n";
    xml += Element("\t", "CODE", std::to_string(result.code));
    xml += Element("\t", "MESSAGE", result.message);
    xml += Element("\t", "EXITCODE", std::to_string(result.exit_code));
    xml += Element("\t", "TARGET", result.target);
    xml += Element("\t", "TOOLVERSION", result.version);
    xml += Element("\t", "STARTED", Vantix::UtcSecondsText(result.started));
    xml += Element("\t", "FINISHED", Vantix::UtcSecondsText(result.finished));
    xml += "\t<SOURCES>\n";
    for (const auto& status : result.sources) xml += SourceElement(status);
    return xml + "\t</SOURCES>\n</RESULT>\n";
}

}  // namespace tarsel
