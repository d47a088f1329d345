#include "platform/redfish/bmc_kind.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/redfish/text_rules.h"
#include "transport/redfish/json_fields.h"
#include "transport/text/ascii_case.h"

namespace Vantix::redfish {
namespace {

namespace json = transport::json;

enum class Match { kAnywhere, kWord, kWordStart, kVendor };

struct Rule {
    BmcKind kind;
    Match match;
    std::string_view text;  // lower case
};

constexpr Rule kRules[] = {
    {kBmcKindTavro, Match::kAnywhere, "tavro"},
    {kBmcKindOssa2, Match::kWord, "ossa2"},
    {kBmcKindOssa2, Match::kWord, "ossa 2"},
    {kBmcKindOssa, Match::kWord, "ossa"},
    {kBmcKindVesk, Match::kWordStart, "vesk"},
    {kBmcKindIlo, Match::kWordStart, "ilo"},
    {kBmcKindIlo, Match::kAnywhere, "integrated lights-out"},
    {kBmcKindIdrac, Match::kAnywhere, "idrac"},
    {kBmcKindIdrac, Match::kAnywhere, "remote access controller"},
    {kBmcKindIrmc, Match::kAnywhere, "irmc"},
    {kBmcKindCimc, Match::kWord, "cimc"},
    {kBmcKindCimc, Match::kVendor, "cisco"},
    {kBmcKindOpenBmc, Match::kAnywhere, "openbmc"},
    {kBmcKindAmi, Match::kAnywhere, "megarac"},
    {kBmcKindAmi, Match::kAnywhere, "ami redfish"},
    {kBmcKindAmi, Match::kVendor, "ami"},
    {kBmcKindAmi, Match::kVendor, "american megatrends"},
};

bool IsWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}
/// `text` and `word` in lower case. A word start may be followed by digits only ("ilo7"), so that
/// "ilo" is not found in "ilonder".
bool HasWord(std::string_view text, std::string_view word, bool may_have_digits) {
    for (std::size_t at = text.find(word); at != std::string_view::npos;
         at = text.find(word, at + 1)) {
        std::size_t end = at + word.size();
        while (may_have_digits && end < text.size() && transport::IsAsciiDigit(text[end])) ++end;
        const bool starts = at == 0 || !IsWordCharacter(text[at - 1]);
        if (starts && (end == text.size() || !IsWordCharacter(text[end]))) return true;
    }
    return false;
}

bool Fits(const Rule& rule, std::string_view texts, std::string_view vendor) {
    switch (rule.match) {
        case Match::kAnywhere:
            return texts.find(rule.text) != std::string_view::npos;
        case Match::kWord:
            return HasWord(texts, rule.text, false);
        case Match::kWordStart:
            return HasWord(texts, rule.text, true);
        case Match::kVendor:
            return HasWord(vendor, rule.text, false);
    }
    return false;
}

/// The number behind "tavro" ("Tavro V3", "TAVRO-3"); 0 when there is none.
int TavroGeneration(const std::string& text) {
    const std::string lower = Lower(text);
    const std::size_t name = lower.find("tavro");
    if (name == std::string::npos) return 0;
    std::string_view rest = std::string_view(lower).substr(name + 5);
    const auto skip_blanks = [&rest] {
        const std::size_t first = rest.find_first_not_of(" _-");
        rest.remove_prefix(first == std::string_view::npos ? rest.size() : first);
    };
    skip_blanks();
    for (const std::string_view prefix : {"generation", "gen", "v"}) {
        if (rest.substr(0, prefix.size()) != prefix) continue;
        rest.remove_prefix(prefix.size());
        skip_blanks();
        break;
    }
    const bool is_one_digit = !rest.empty() && transport::IsAsciiDigit(rest[0]) &&
                              (rest.size() == 1 || !transport::IsAsciiDigit(rest[1]));
    return is_one_digit ? rest[0] - '0' : 0;
}

}  // namespace

BmcFacts ReadBmcFacts(const ServerSnapshot& snapshot, const Resource* manager) {
    BmcFacts facts;
    facts.vendor = json::Text(snapshot.root, "Vendor");
    facts.product = json::Text(snapshot.root, "Product");
    if (manager == nullptr) return facts;
    facts.model = json::Text(manager->body, "Model");
    facts.name = json::Text(manager->body, "Name");
    facts.firmware_version = json::Text(manager->body, "FirmwareVersion");
    return facts;
}

BmcKind BmcKindOf(const BmcFacts& facts) {
    const std::string texts = Lower(facts.model + "\n" + facts.product + "\n" + facts.name + "\n" +
                                    facts.firmware_version);
    const std::string vendor = Lower(facts.vendor);
    const auto found = std::find_if(std::begin(kRules), std::end(kRules),
                                    [&](const Rule& rule) { return Fits(rule, texts, vendor); });
    return found == std::end(kRules) ? kBmcKindOther : found->kind;
}

std::string BmcKindText(int kind) {
    switch (kind) {
        case kBmcKindOther:
            return "BMC";
        case kBmcKindTavro:
            return "Tavro";
        case kBmcKindOssa:
            return "Ossa";
        case kBmcKindOssa2:
            return "Ossa2";
        case kBmcKindAmi:
            return "AMI";
        case kBmcKindVesk:
            return "Vesk";
        case kBmcKindIlo:
            return "iLO";
        case kBmcKindIdrac:
            return "iDRAC";
        case kBmcKindOpenBmc:
            return "OpenBMC";
        case kBmcKindCimc:
            return "CIMC";
        case kBmcKindIrmc:
            return "iRMC";
        default:
            return {};
    }
}

bool IsThirdGenerationTavro(const BmcFacts& facts) {
    if (BmcKindOf(facts) != kBmcKindTavro) return false;
    return TavroGeneration(facts.model) == 3 || TavroGeneration(facts.product) == 3 ||
           Lower(facts.firmware_version).rfind("tv3", 0) == 0;
}

std::string ReadReleaseName(const Resource* manager) {
    const boost::json::object* oem =
        manager == nullptr ? nullptr : json::Object(manager->body, "Oem");
    if (oem == nullptr) return {};
    for (const auto& maker : *oem) {
        const boost::json::object* fields = maker.value().if_object();
        if (fields == nullptr) continue;
        const std::string name = json::Text(*fields, "ReleaseName");
        if (!name.empty()) return name;
    }
    return json::Text(*oem, "ReleaseName");
}

}  // namespace Vantix::redfish
