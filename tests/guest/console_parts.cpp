#include "guest/console_parts.h"

#include <sstream>

namespace guest {
namespace {

constexpr std::string_view kBegin = "@@begin ";
constexpr std::string_view kEnd = "@@end ";

// A terminal ends lines with CR LF.
std::string Unended(std::string line) {
    while (line.ends_with('\r')) line.pop_back();
    return line;
}

}  // namespace

ConsoleParts ReadParts(std::string_view console) {
    ConsoleParts parts;
    std::istringstream lines{std::string(console)};
    std::string open;
    for (std::string line; std::getline(lines, line);) {
        line = Unended(std::move(line));
        const std::string end = std::string(kEnd) + open + " ";
        if (line.starts_with(kBegin)) {
            open = line.substr(kBegin.size());
            parts[open] = {};
        } else if (!open.empty() && line.starts_with(end)) {
            std::istringstream(line.substr(end.size())) >> parts[open].status;
            open.clear();
        } else if (!open.empty()) {
            parts[open].text += line + "\n";
        }
    }
    return parts;
}

Facts ReadFacts(std::string_view text) {
    Facts facts;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        const std::size_t at = line.find('=');
        if (at != std::string::npos) facts[line.substr(0, at)] = line.substr(at + 1);
    }
    return facts;
}

std::string WithMarks(std::string text, const Facts& facts, const std::vector<std::string>& keys) {
    for (const std::string& key : keys) {
        const auto fact = facts.find(key);
        if (fact == facts.end() || fact->second.empty()) continue;
        const std::string mark = "${" + key + "}";
        for (std::size_t at = text.find(fact->second); at != std::string::npos;
             at = text.find(fact->second, at + mark.size())) {
            text.replace(at, fact->second.size(), mark);
        }
    }
    return text;
}

}  // namespace guest
