#include "platform/redfish/slot_rules.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;
using WordList = std::vector<std::string>;

/// What is known about one place, label and words in lower case.
struct Place {
    std::string label;
    WordList words;
    std::string location_type;
    std::string slot_type;
    std::string ordinal;
    DeviceKind kind = DeviceKind::kPcieDevice;
};

bool IsNumber(std::string_view word) {
    return !word.empty() && word.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string WithoutLeadingZeros(const std::string& number) {
    const std::size_t first = number.find_first_not_of('0');
    return first == std::string::npos ? std::string("0") : number.substr(first);
}

/// The word behind the last of the earliest keyword in the list that is followed by one.
std::string WordBehind(const WordList& words, std::initializer_list<std::string_view> keywords,
                       bool (*accepts)(std::string_view)) {
    for (const std::string_view keyword : keywords) {
        for (std::size_t at = words.size(); at-- > 1;) {
            if (words[at - 1] == keyword && accepts(words[at])) return words[at];
        }
    }
    return {};
}

bool IsLetterAlone(std::string_view word) {
    return word.size() == 1 && !IsNumber(word);
}

std::string WordBehindKeyword(const Place& place, bool (*accepts)(std::string_view)) {
    switch (place.kind) {
        case DeviceKind::kDrive:
            return WordBehind(place.words, {"bay", "slot", "disk", "drive"}, accepts);
        case DeviceKind::kPowerSupply:
            return WordBehind(place.words, {"psu", "bay", "slot", "supply"}, accepts);
        case DeviceKind::kMemory:
            return WordBehind(place.words, {"dimm", "slot"}, accepts);
        default:
            return WordBehind(place.words, {"slot", "bay"}, accepts);
    }
}

std::string LastNumber(const WordList& words) {
    const auto found = std::find_if(words.rbegin(), words.rend(), IsNumber);
    return found == words.rend() ? std::string() : *found;
}

std::string NumberOf(const Place& place) {
    const std::string printed = WordBehindKeyword(place, IsNumber);
    if (!printed.empty()) return WithoutLeadingZeros(printed);
    if (!place.ordinal.empty()) return place.ordinal;
    const std::string letter = WordBehindKeyword(place, IsLetterAlone);
    if (!letter.empty()) return std::string(1, static_cast<char>(letter[0] - 'a' + 'A'));
    const std::string last = LastNumber(place.words);
    return last.empty() ? last : WithoutLeadingZeros(last);
}

bool Has(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

std::int32_t RetimerType(const Place& place) {
    if (Has(place.label, "ocp")) return kSlotRetimerOcp;
    if (Has(place.label, "riser")) return kSlotRetimerRiser;
    if (Has(place.label, "cff")) return kSlotRetimerCff;
    return kSlotRetimer;
}

bool IsCard(DeviceKind kind) {
    return kind == DeviceKind::kNetworkAdapter || kind == DeviceKind::kStorageController ||
           kind == DeviceKind::kPcieDevice;
}

std::int32_t TypeOf(const Place& place) {
    if (place.kind == DeviceKind::kPowerSupply) return kSlotPsu;
    if (place.kind == DeviceKind::kMemory) return kSlotMemory;
    if (HasAnyWord(place.words, {"retimer"})) return RetimerType(place);
    if (place.slot_type.rfind("ocp", 0) == 0 || HasAnyWord(place.words, {"ocp"})) return kSlotOcp;
    if (place.slot_type == "m2" || Has(place.label, "m.2") || Has(place.label, "m2")) {
        return kSlotM2Bay;
    }
    if (Has(place.label, "7mm") || Has(place.label, "7 mm")) return kSlot7mmBay;
    if (place.kind == DeviceKind::kDrive || place.slot_type == "u2") return kSlotDriveBay;
    // "PCI 1" is also how makers label PCIe slots; only a bare "PCI slot" is one of the old bus.
    const bool is_bare_label = place.location_type.empty() && place.slot_type.empty();
    if (is_bare_label && Has(place.label, "pci slot")) return kSlotPci;
    const bool is_slot = !place.slot_type.empty() || place.location_type == "slot" ||
                         Has(place.label, "slot") || Has(place.label, "pcie");
    return IsCard(place.kind) && is_slot ? kSlotPcie : kSlotOnBoard;
}

/// "Slot=14:Port=2:Box=1:Bay=1" is the way to a part; only its end is where the part is.
std::string EndOfPath(const std::string& label) {
    const bool is_path = label.find('=') != std::string::npos;
    return is_path ? label.substr(label.rfind(':') + 1) : label;
}

void SetLabel(const std::string& label, Place& place) {
    const std::string end = EndOfPath(label);
    place.words = Words(end);
    place.label = Lower(end);
}

bool IsOnBoard(const Place& place) {
    return place.location_type == "embedded" || Has(place.label, "system board") ||
           HasAnyWord(place.words, {"embedded", "onboard", "integrated"});
}

Slot SlotOf(const Place& place) {
    if (IsOnBoard(place)) return {};
    Slot slot{NumberOf(place), TypeOf(place)};
    // A number alone does not make a slot of a card that nothing says to be in one.
    if (!slot.IsKnown() || (slot.type == kSlotOnBoard && place.location_type != "bay")) return {};
    return slot;
}

}  // namespace

Slot SlotOfLocation(const boost::json::object& location, DeviceKind kind,
                    const std::string& slot_type) {
    Place place;
    place.kind = kind;
    place.slot_type = Lower(slot_type);
    const boost::json::object* part = json::Object(location, "PartLocation");
    std::string label = json::Text(location, "Info");
    if (part != nullptr) {
        label = FirstOf({json::Text(*part, "ServiceLabel"), label});
        place.location_type = Lower(json::Text(*part, "LocationType"));
        const auto ordinal = json::Integer(*part, "LocationOrdinalValue");
        if (ordinal && *ordinal >= 0) place.ordinal = std::to_string(*ordinal);
    }
    SetLabel(label, place);
    return SlotOf(place);
}

Slot SlotOfLabel(const std::string& label, DeviceKind kind) {
    Place place;
    place.kind = kind;
    SetLabel(label, place);
    return SlotOf(place);
}

bool IsSlotLabel(const std::string& text) {
    const WordList words = Words(text);
    if (words.size() < 2 || words.size() > 4 || !IsNumber(words.back())) return false;
    return HasAnyWord(words, {"slot", "bay", "psu"}) &&
           std::all_of(words.begin(), words.end() - 1, [](const std::string& word) {
               return HasAnyWord({word}, {"slot", "bay", "psu", "pcie", "pci", "e", "ocp", "drive",
                                          "m", "2", "riser"});
           });
}

}  // namespace Vantix::redfish
