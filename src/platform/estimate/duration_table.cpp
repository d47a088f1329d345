#include "platform/estimate/duration_table.h"

#include <algorithm>
#include <charconv>

namespace Vantix {
namespace {

constexpr std::size_t kLongestKey = 200;

std::string CleanKey(const std::string& key) {
    std::string clean = key.substr(0, kLongestKey);
    std::replace_if(
        clean.begin(), clean.end(),
        [](char letter) { return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F; },
        ' ');
    const std::size_t first = clean.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return clean.substr(first, clean.find_last_not_of(' ') - first + 1);
}

}  // namespace

DurationTable DurationTable::Read(std::istream& text) {
    DurationTable table;
    std::string line;
    while (std::getline(text, line)) {
        int seconds = 0;
        const char* const end = line.data() + line.size();
        const auto [stop, error] = std::from_chars(line.data(), end, seconds);
        if (error != std::errc() || stop == end || *stop != ' ') continue;
        table.Remember(std::string(stop + 1, end), seconds);
    }
    return table;
}

void DurationTable::Write(std::ostream& text) const {
    for (const auto& [key, seconds] : entries_) {
        text << std::to_string(seconds) << ' ' << key << '\n';
    }
}

std::optional<int> DurationTable::Find(const std::string& key) const {
    const std::string clean = CleanKey(key);
    for (const auto& [known, seconds] : entries_) {
        if (known == clean) return seconds;
    }
    return std::nullopt;
}

void DurationTable::Remember(const std::string& key, int seconds) {
    const std::string clean = CleanKey(key);
    if (clean.empty() || seconds < 1 || seconds > kLongestSeconds) return;
    std::erase_if(entries_, [&clean](const auto& entry) { return entry.first == clean; });
    if (entries_.size() >= kMostEntries) entries_.erase(entries_.begin());
    entries_.emplace_back(clean, seconds);
}

}  // namespace Vantix
