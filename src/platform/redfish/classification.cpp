#include "platform/redfish/classification.h"

#include <algorithm>
#include <string_view>

#include "platform/redfish/text_rules.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {
namespace {

using WordList = std::vector<std::string>;

WordList WordsOf(const ClassificationEvidence& evidence) {
    return Words(evidence.id + " " + evidence.name + " " + evidence.software_id + " " +
                 evidence.description);
}

/// Whether two words stand side by side.
bool HasPair(const WordList& words, std::string_view first, std::string_view second) {
    return std::adjacent_find(words.begin(), words.end(),
                              [&](const std::string& left, const std::string& right) {
                                  return left == first && right == second;
                              }) != words.end();
}

bool SaysFirmware(const WordList& words) {
    return HasAnyWord(words, {"firmware", "fw", "bmc", "cpld", "fpga", "rom", "nic", "hba", "psu",
                              "tpm", "backplane", "expander", "bootloader"});
}

bool RelatesToBios(const ClassificationEvidence& evidence) {
    return std::any_of(
        evidence.related_paths.begin(), evidence.related_paths.end(),
        [](const std::string& path) { return Lower(transport::LastSegment(path)) == "bios"; });
}

bool SaysBios(const WordList& words) {
    return HasAnyWord(words, {"bios", "uefi", "fcode"}) || HasPair(words, "system", "rom") ||
           HasPair(words, "option", "rom") || HasPair(words, "expansion", "rom");
}

bool SaysDriver(const WordList& words) {
    return HasAnyWord(words, {"driver", "drivers"}) && !SaysFirmware(words);
}

bool SaysOperatingSystem(const WordList& words) {
    return HasPair(words, "operating", "system") || HasPair(words, "embedded", "os") ||
           HasAnyWord(words, {"hypervisor"});
}

bool SaysConfiguration(const WordList& words) {
    return HasPair(words, "configuration", "utility") || HasPair(words, "configuration", "tool") ||
           HasPair(words, "configuration", "software") || HasPair(words, "setup", "utility") ||
           HasPair(words, "setup", "tool");
}

}  // namespace

std::string ClassificationOf(const ClassificationEvidence& evidence) {
    const WordList words = WordsOf(evidence);
    if (HasAnyWord(words, {"diagnostic", "diagnostics", "diags"})) return "7";
    // A "UEFI driver" of a card is its option ROM.
    if (SaysBios(words) || RelatesToBios(evidence)) return "6";
    if (SaysDriver(words)) return "2";
    if (HasPair(words, "service", "pack") || HasPair(words, "support", "pack")) return "12";
    if (HasPair(words, "software", "bundle") || HasPair(words, "firmware", "bundle")) return "13";
    if (SaysOperatingSystem(words)) return "8";
    if (SaysConfiguration(words)) return "3";
    if (HasAnyWord(words, {"middleware"})) return "9";
    if (HasAnyWord(words, {"instrumentation"})) return "5";
    const bool is_firmware =
        evidence.is_in_firmware_inventory || evidence.has_related_hardware || SaysFirmware(words);
    return is_firmware ? "10" : "4";
}

}  // namespace Vantix::redfish
