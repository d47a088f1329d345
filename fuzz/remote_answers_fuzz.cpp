// What a remote machine answers and leaves: scripts' output, scan file, target addresses.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "platform/remote_command/remote_command.h"
#include "platform/remote_command/remote_scripts.h"
#include "platform/remote_command/scan_file_cleaning.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void ParseUri(const std::string& text) {
    try {
        Require(!Vantix::Uri(text, false).Host().empty());
    } catch (const std::invalid_argument&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto machine = Vantix::remote::ParseSetupAnswer(text);
    Require(machine.folder.empty() || machine.folder.front() == '/');
    const auto files = Vantix::remote::ParseListAnswer(text, {"a.xml"});
    for (const std::string& name : files.regular) Require(name == "a.xml");
    const std::string clean = Vantix::remote::CleanScanXml(text);
    Require(clean.find('\x1B') == std::string::npos);
    Require(Vantix::remote::CleanScanXml(clean) == clean);
    ParseUri(text);
    ParseUri("ssh://" + text);
    return 0;
}
