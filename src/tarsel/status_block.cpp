#include "tarsel/status_block.h"

#include <algorithm>

namespace tarsel {
namespace {

using Vantix::VantixConnection::SourceState;
using Vantix::VantixConnection::SourceStateText;
using Vantix::VantixConnection::SourceStatus;

std::string Clean(std::string text) {
    std::replace_if(
        text.begin(), text.end(),
        [](char letter) { return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F; },
        ' ');
    return text;
}

std::string Padded(std::string text, std::size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

std::string Counts(const SourceStatus& status) {
    std::string text = std::to_string(status.items_read) + " read";
    if (status.items_failed > 0) text += ", " + std::to_string(status.items_failed) + " failed";
    return text;
}

std::string Issues(const SourceStatus& status, std::size_t most) {
    std::string text;
    const std::size_t shown = std::min(most, status.issues.size());
    for (std::size_t i = 0; i < shown; ++i) text += "    - " + Clean(status.issues[i]) + "\n";
    if (shown < status.issues.size()) {
        text += "    - " + std::to_string(status.issues.size() - shown) + " more, see tarsel.log\n";
    }
    return text;
}

}  // namespace

std::string StatusBlock(const std::string& target, const std::vector<SourceStatus>& sources,
                        std::size_t issues_shown) {
    if (sources.empty()) return {};
    std::size_t width = 0;
    for (const SourceStatus& status : sources) width = std::max(width, status.source.size());
    const std::size_t state_width = std::string(SourceStateText(SourceState::kUnsupported)).size();
    std::string block = "Sources of " + Clean(target) + ":\n";
    for (const SourceStatus& status : sources) {
        block += "  " + Padded(Clean(status.source), width) + "  " +
                 Padded(SourceStateText(status.state), state_width) + "  " + Counts(status);
        if (!status.detail.empty()) block += ": " + Clean(status.detail);
        block += "\n" + Issues(status, issues_shown);
    }
    return block;
}

std::string GapSentence(const std::string& target, const std::vector<SourceStatus>& sources) {
    std::string gaps;
    for (const SourceStatus& status : sources) {
        if (!IsGap(status)) continue;
        if (!gaps.empty()) gaps += ", ";
        gaps += Clean(status.source) + " (" + SourceStateText(status.state) + ")";
    }
    if (gaps.empty()) return {};
    return "The scan of " + Clean(target) + " is partial: " + gaps + "; see tarsel.log for more.";
}

}  // namespace tarsel
