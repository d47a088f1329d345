#include "tarsel/progress_line.h"

#include <algorithm>

namespace tarsel {
namespace {

constexpr int kBarCells = 20;

std::string Bar(int elapsed, int estimated) {
    const int filled = static_cast<int>(static_cast<long long>(elapsed) * kBarCells / estimated);
    const int shown = std::clamp(filled, 0, kBarCells - 1);
    return "[" + std::string(static_cast<std::size_t>(shown), '#') +
           std::string(static_cast<std::size_t>(kBarCells - shown), '-') + "] ";
}

bool IsTail(char letter) {
    return (static_cast<unsigned char>(letter) & 0xC0U) == 0x80U;
}

// One column a letter: texts from outside are rare here, and a line that ends a little early does
// no harm.
std::string CutToColumns(const std::string& text, std::size_t columns) {
    std::string cut;
    std::size_t used = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!IsTail(text[i]) && used++ == columns) break;
        const auto byte = static_cast<unsigned char>(text[i]);
        cut += byte < 0x20 || byte == 0x7F ? ' ' : text[i];
    }
    return cut;
}

}  // namespace

std::string ProgressLine(const ProgressState& state, std::size_t columns) {
    std::string line = state.stage + " ";
    if (state.estimated_seconds > 0) line += Bar(state.elapsed_seconds, state.estimated_seconds);
    line += std::to_string(state.elapsed_seconds) + " s";
    if (state.estimated_seconds > 0) {
        line += " of about " + std::to_string(state.estimated_seconds) + " s";
    }
    if (!state.activity.empty()) line += ", " + state.activity;
    return CutToColumns(line, columns > 1 ? columns - 1 : 1);
}

}  // namespace tarsel
