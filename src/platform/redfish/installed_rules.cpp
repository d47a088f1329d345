#include "platform/redfish/installed_rules.h"

#include <cstddef>
#include <string_view>

#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;

struct Rule {
    std::string_view word;  // lower case
    InstallState state;
};

constexpr Rule kRules[] = {
    {"previous", InstallState::kFormer},  {"rollback", InstallState::kFormer},
    {"available", InstallState::kNotYet}, {"staged", InstallState::kNotYet},
    {"pending", InstallState::kNotYet},   {"next", InstallState::kNotYet},
};

bool HasPrefix(const std::string& lower, std::string_view word) {
    constexpr std::string_view kSeparators = "-_:. ";
    return lower.size() > word.size() && lower.compare(0, word.size(), word) == 0 &&
           kSeparators.find(lower[word.size()]) != std::string_view::npos;
}

InstallState StateByPrefix(const std::string& text) {
    const std::string lower = Lower(text);
    for (const Rule& rule : kRules) {
        if (HasPrefix(lower, rule.word)) return rule.state;
    }
    return InstallState::kInstalled;
}

InstallState StateByStatus(const std::string& text) {
    const std::string lower = Lower(text);
    for (const Rule& rule : kRules) {
        if (lower == rule.word) return rule.state;
    }
    return InstallState::kInstalled;
}

std::string SoftwareStatus(const boost::json::object& body) {
    const boost::json::object* oem = json::Object(body, "Oem");
    std::string status = json::Text(body, "SoftwareStatus");
    if (oem == nullptr || !status.empty()) return status;
    for (const auto& maker : *oem) {
        const boost::json::object* fields = maker.value().if_object();
        if (fields != nullptr && status.empty()) status = json::Text(*fields, "SoftwareStatus");
    }
    return status;
}

}  // namespace

InstallState InstallStateOf(const boost::json::object& body) {
    if (Lower(json::TextAt(body, {"Status", "State"})) == "absent") {
        return InstallState::kNotPresent;
    }
    for (const char* key : {"Id", "Name"}) {
        const InstallState state = StateByPrefix(json::Text(body, key));
        if (state != InstallState::kInstalled) return state;
    }
    return StateByStatus(SoftwareStatus(body));
}

std::string InstallStateText(InstallState state) {
    switch (state) {
        case InstallState::kFormer:
            return "a former version, not installed";
        case InstallState::kNotYet:
            return "available, not installed";
        case InstallState::kNotPresent:
            return "not present";
        case InstallState::kInstalled:
            break;
    }
    return {};
}

bool CallsItselfBackup(const boost::json::object& body) {
    const auto words =
        Words(json::Text(body, "Id") + " " + json::Text(body, "Name") + " " +
              json::Text(body, "SoftwareId") + " " + json::Text(body, "Description"));
    if (HasAnyWord(words, {"backup", "redundant", "inactive", "secondary", "golden"})) return true;
    return Lower(json::TextAt(body, {"Status", "State"})).rfind("standby", 0) == 0;
}

std::string IdBehindPrefix(const std::string& id, bool& is_current) {
    const std::string lower = Lower(id);
    for (const std::string_view prefix : {"current", "installed"}) {
        if (!HasPrefix(lower, prefix)) continue;
        is_current = prefix == "current";
        return id.substr(prefix.size() + 1);
    }
    return {};
}

}  // namespace Vantix::redfish
