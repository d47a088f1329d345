#include "platform/log/log_record.h"

#include <string_view>

#include "platform/log/utc_time.h"

namespace Vantix {
namespace {

constexpr std::string_view kContinuation = "\n    ";

bool IsControl(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return (byte < 0x20 && letter != '\t') || byte == 0x7F;
}

void AppendText(const std::string& text, std::size_t length, std::string& record) {
    for (std::size_t i = 0; i < length; ++i) {
        if (text[i] == '\n') {
            record += kContinuation;
        } else if (text[i] != '\r' || i + 1 >= length || text[i + 1] != '\n') {
            record += IsControl(text[i]) ? ' ' : text[i];
        }
    }
}

// Blank space at the end of a text would only make empty continuation lines.
std::size_t LengthWithoutTrailingSpace(const std::string& text) {
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return last == std::string::npos ? 0 : last + 1;
}

}  // namespace

std::string FormatLogRecord(int level, const char* source, int line, const std::string& text,
                            std::chrono::system_clock::time_point time) {
    std::string record = UtcMillisecondsText(time);
    record += " [" + std::to_string(level) + "] ";
    record += source == nullptr ? "" : source;
    record += ":" + std::to_string(line) + " ";
    const std::size_t length = LengthWithoutTrailingSpace(text);
    if (length <= kLongestLogRecord) {
        AppendText(text, length, record);
        return record;
    }
    AppendText(text, kLongestLogRecord, record);
    record += " ... (" + std::to_string(length - kLongestLogRecord) + " bytes more)";
    return record;
}

}  // namespace Vantix
