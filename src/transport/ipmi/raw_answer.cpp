#include "transport/ipmi/raw_answer.h"

#include <algorithm>

namespace Vantix::transport {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kRefused = "Unable to send RAW command (";

template <typename Function>
void ForEachLine(std::string_view text, const Function& function) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        function(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The value behind "<name>=0x" inside the brackets.
std::optional<std::uint32_t> HexValue(std::string_view line, std::string_view name) {
    const std::string key = std::string(name) + "=0x";
    const std::size_t at = line.find(key);
    if (at == std::string_view::npos) return {};
    const std::string_view rest = line.substr(at + key.size());
    return ParseHex(rest.substr(0, std::min(rest.find_first_of(" )"), rest.size())), 0xff);
}

}  // namespace

std::vector<std::optional<std::string>> SplitAnswers(std::string_view output, std::size_t count) {
    std::vector<std::optional<std::string>> answers(count);
    std::size_t marks_seen = 0;
    ForEachLine(output, [&](std::string_view line) {
        if (marks_seen <= count && Trimmed(line) == AnswerMark(marks_seen)) {
            if (marks_seen < count) answers[marks_seen] = std::string();
            ++marks_seen;
        } else if (marks_seen > 0 && marks_seen <= count) {
            answers[marks_seen - 1]->append(line).push_back('\n');
        }
    });
    if (marks_seen == 0) answers.clear();
    return answers;
}

std::optional<Bytes> ParseRawBytes(std::string_view text) {
    Bytes bytes;
    for (text = Trimmed(text); !text.empty();) {
        const std::size_t end = std::min(text.find_first_of(kBlanks), text.size());
        const auto byte = end == 2 ? ParseHex(text.substr(0, end), 0xff) : std::nullopt;
        if (!byte) return {};
        bytes.push_back(static_cast<std::uint8_t>(*byte));
        text = Trimmed(text.substr(end));
    }
    if (bytes.empty()) return {};
    return bytes;
}

std::vector<RawRefusal> ParseRefusals(std::string_view error_output) {
    std::vector<RawRefusal> refusals;
    ForEachLine(error_output, [&](std::string_view line) {
        if (line.find(kRefused) == std::string_view::npos) return;
        const auto network_function = HexValue(line, "netfn");
        const auto command = HexValue(line, "cmd");
        if (!network_function || !command) return;
        const auto completion = HexValue(line, "rsp");
        refusals.push_back({static_cast<std::uint8_t>(*network_function),
                            static_cast<std::uint8_t>(*command),
                            completion ? static_cast<int>(*completion) : -1});
    });
    return refusals;
}

std::vector<RawAnswer> ReadRawAnswers(const std::vector<RawRequest>& requests,
                                      const std::vector<std::optional<std::string>>& texts,
                                      std::string_view error_output) {
    std::vector<RawAnswer> answers(requests.size());
    const std::vector<RawRefusal> refusals = ParseRefusals(error_output);
    auto next = refusals.begin();
    for (std::size_t i = 0; i < requests.size() && i < texts.size(); ++i) {
        if (!texts[i]) continue;
        if (auto bytes = ParseRawBytes(*texts[i])) {
            answers[i] = {kCompletionOk, std::move(*bytes)};
            continue;
        }
        const auto named = std::find_if(next, refusals.end(), [&](const RawRefusal& refusal) {
            return refusal.network_function == requests[i].network_function &&
                   refusal.command == requests[i].command;
        });
        if (named == refusals.end()) continue;
        answers[i].completion = named->completion;
        next = named + 1;
    }
    return answers;
}

}  // namespace Vantix::transport
