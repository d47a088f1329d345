#include "platform/local/os_release.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platform/redfish/text_rules.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::local {
namespace {

using Assignments = std::map<std::string, std::string>;

constexpr std::string_view kBlanks = " \t\r";
constexpr const char* kMaintenanceId = "platform";
constexpr const char* kMaintenanceName = "PLATFORM";

// Distributions whose release is a year and a month: updates of it count behind both.
constexpr std::array<std::string_view, 3> kYearMonthReleases = {"ubuntu", "openeuler", "nixos"};

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsName(std::string_view text) {
    constexpr std::string_view kLetters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_";
    return !text.empty() && text.find_first_not_of(kLetters) == std::string_view::npos;
}

// Within double quotes a backslash stands before the letters that a shell takes for more than
// themselves; elsewhere it is itself.
bool IsEscape(std::string_view value, std::size_t at, char quote) {
    if (quote == '\'' || value[at] != '\\' || at + 1 >= value.size()) return false;
    return quote == '\0' || std::string_view("\"\\$`").find(value[at + 1]) != std::string::npos;
}

std::string Unquoted(std::string_view value) {
    char quote = '\0';
    if (!value.empty() && (value.front() == '"' || value.front() == '\'')) {
        quote = value.front();
        value.remove_prefix(1);
    }
    std::string text;
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (IsEscape(value, at, quote)) {
            text += value[++at];
        } else if (quote != '\0' && value[at] == quote) {
            break;
        } else {
            text += value[at];
        }
    }
    return text;
}

std::string ValueOf(const Assignments& release, const char* name) {
    const auto found = release.find(name);
    return found == release.end() ? std::string() : found->second;
}

struct Version {
    std::string major_part;
    std::string minor_part;
};

Version SplitAtFirstDot(const std::string& text) {
    const std::size_t dot = std::min(text.find('.'), text.size());
    return {text.substr(0, dot), text.substr(std::min(dot + 1, text.size()))};
}

// "22.04" with "22.04.3 LTS (Some Name)" gives 3.
std::string UpdateOf(const std::string& release, const std::string& version) {
    const std::string start = release + ".";
    if (version.compare(0, start.size(), start) != 0) return {};
    const std::size_t end = version.find_first_not_of("0123456789.", start.size());
    return version.substr(start.size(), end == std::string::npos ? end : end - start.size());
}

Version VersionOf(const std::string& id, const Assignments& release) {
    const std::string version_id = ValueOf(release, "VERSION_ID");
    const bool is_year_month = std::find(kYearMonthReleases.begin(), kYearMonthReleases.end(),
                                         id) != kYearMonthReleases.end();
    if (!is_year_month) return SplitAtFirstDot(version_id);
    return {version_id, UpdateOf(version_id, ValueOf(release, "VERSION"))};
}

}  // namespace

Assignments ParseOsRelease(std::string_view text) {
    Assignments assignments;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = Trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || !IsName(line.substr(0, equals))) continue;
        assignments[std::string(line.substr(0, equals))] =
            transport::CleanText(Unquoted(line.substr(equals + 1)));
    }
    return assignments;
}

OsName OsNameOf(const Assignments& release) {
    std::string id = redfish::Lower(ValueOf(release, "ID"));
    if (id == kMaintenanceId) return {kMaintenanceName, ValueOf(release, "VERSION_ID")};
    if (id.empty()) id = "linux";
    const Version version = VersionOf(id, release);
    return {id + version.major_part, version.minor_part};
}

}  // namespace Vantix::local
