// Any bytes as the product data of a PCI device: read without a crash, every text that comes out is
// clean, and more bytes never take back that the reading was finished.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/pci/vpd.h"

namespace {

using Vantix::pci::ParseVpd;
using Vantix::pci::Vpd;

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    if (std::any_of(text.begin(), text.end(), is_control)) std::abort();
}

void Require(const Vpd& vpd) {
    RequireClean(vpd.identifier);
    for (const auto& [keyword, value] : vpd.read_only) {
        if (keyword.size() != 2) std::abort();
        RequireClean(value);
    }
    const std::string version = FirmwareVersionOf(vpd);
    RequireClean(version);
    if (vpd.is_checksum_right && !vpd.has_checksum) std::abort();
    if (!version.empty() && vpd.has_checksum && !vpd.is_checksum_right) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    const Vpd whole = ParseVpd(bytes);
    Require(whole);
    const Vpd beginning = ParseVpd(std::string_view(bytes).substr(0, size / 2));
    Require(beginning);
    if (beginning.is_finished && beginning.read_only != whole.read_only) std::abort();
    // As the content of the fields, so that they are reached.
    const std::size_t length = std::min<std::size_t>(size, 0xFFFF);
    std::string list = {'\x90', static_cast<char>(length & 0xFFU), static_cast<char>(length >> 8U)};
    Require(ParseVpd(list + bytes.substr(0, length)));
    return 0;
}
