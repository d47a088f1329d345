#include <algorithm>

#include "transport/arcconf/arcconf_lines.h"
#include "transport/arcconf/arcconf_output.h"
#include "transport/text/ascii_case.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kMostControllers = 64;
constexpr std::string_view kFound = "controllers found";

// "Controllers found: 1", with or without a blank before the colon.
std::optional<int> ReadFound(const ArcconfLine& line) {
    if (line.has_value) return LeadingNumber(line.value);
    return NumberBehind(line.key, "found: ");
}

// "Optimal, Slot 8, HBA, MSCC Adaptec HBA 1100-16i, 8A246320899, 50000D1704B53280"
void ReadFields(std::string_view fields, ArcconfController& controller) {
    constexpr int kNameField = 3;
    for (int field = 0; !fields.empty(); ++field) {
        const std::size_t end = std::min(fields.find(','), fields.size());
        const std::string text = CleanText(fields.substr(0, end));
        if (field == kNameField) controller.name = text;
        const auto slot = field == 1 ? NumberBehind(text, "slot ") : std::nullopt;
        if (slot) controller.slot = std::to_string(*slot);
        fields.remove_prefix(std::min(end + 1, fields.size()));
    }
}

// "Controller 1:" with fields, or "Controller #1" without.
std::optional<ArcconfController> ReadController(const ArcconfLine& line) {
    auto id = NumberBehind(line.key, "controller #");
    if (!id) id = NumberBehind(line.key, "controller ");
    if (!id || *id == 0 || AsciiLowerText(line.key).rfind("controller ", 0) != 0) {
        return std::nullopt;
    }
    ArcconfController controller;
    controller.id = *id;
    ReadFields(line.value, controller);
    return controller;
}

}  // namespace

ArcconfControllers ParseArcconfControllers(std::string_view output) {
    ArcconfControllers result;
    ArcconfLines lines(output);
    while (const auto line = lines.Next()) {
        if (AsciiLowerText(line->key).rfind(kFound, 0) == 0) {
            result.found = ReadFound(*line);
            continue;
        }
        const auto controller = ReadController(*line);
        if (!controller || result.controllers.size() == kMostControllers) continue;
        const auto is_same = [&](const ArcconfController& known) {
            return known.id == controller->id;
        };
        if (std::none_of(result.controllers.begin(), result.controllers.end(), is_same)) {
            result.controllers.push_back(*controller);
        }
    }
    return result;
}

std::string ParseArcconfRelease(std::string_view output) {
    ArcconfLines lines(output);
    while (const auto line = lines.Next()) {
        constexpr std::string_view kWord = "version ";
        const std::size_t at = AsciiLowerText(line->key).find(kWord);
        if (at == std::string::npos || !LeadingNumber(line->key.substr(at + kWord.size()))) {
            continue;
        }
        const std::string release = line->key.substr(at + kWord.size());
        return CleanStart(release.substr(0, release.find('|')), 30);
    }
    return {};
}

}  // namespace Vantix::transport
