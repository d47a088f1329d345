// Any bytes as what arcconf says: parsed and classified without a crash. Texts that reach the
// report are clean, addresses are addresses, lists have an end.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "transport/arcconf/arcconf_output.h"
#include "transport/arcconf/arcconf_problem.h"

namespace {

using namespace Vantix::transport;  // NOLINT: the harness is about nothing else

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    if (text.size() > 1000 || std::any_of(text.begin(), text.end(), is_control)) std::abort();
}

void RequireAddress(const std::string& text) {
    RequireClean(text);
    if (!text.empty() && PciAddressText(text) != text) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const ArcconfControllers controllers = ParseArcconfControllers(text);
    if (controllers.controllers.size() > 64) std::abort();
    for (const ArcconfController& controller : controllers.controllers) {
        if (controller.id < 1) std::abort();
        RequireClean(controller.slot);
        RequireClean(controller.name);
    }
    const ArcconfAdapter adapter = ParseArcconfAdapter(text);
    RequireAddress(adapter.pci_address);
    RequireAddress(PciAddressText(text));
    RequireClean(adapter.model);
    RequireClean(adapter.firmware_version);
    for (const ArcconfDisk& disk : ParseArcconfDisks(text).disks) {
        for (const std::string* field : {&disk.vendor, &disk.model, &disk.part_number,
                                         &disk.firmware_version, &disk.serial_number, &disk.bay}) {
            RequireClean(*field);
        }
        if (disk.model.empty()) std::abort();
    }
    RequireClean(ParseArcconfRelease(text));
    CommandOutcome outcome;
    outcome.end = CommandEnd::kExited;
    outcome.output = text;
    static_cast<void>(ClassifyArcconf(outcome));
    RequireClean(ArcconfWords(outcome));
    return 0;
}
