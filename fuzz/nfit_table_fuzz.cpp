// Any bytes as the table in which firmware lists persistent-memory modules: read without a crash,
// and every text that comes out is clean.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/pmem/nfit_reader.h"

namespace {

constexpr std::size_t kShortestModule = 48;

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte >= 0x7f; };
    if (std::any_of(text.begin(), text.end(), is_control)) std::abort();
}

void Read(std::string_view table) {
    const auto modules = Vantix::pmem::ReadNfitModules(table, {});
    if (modules.size() > table.size() / kShortestModule) std::abort();
    for (const auto& module : modules) {
        RequireClean(module.Name);
        RequireClean(module.SoftwareID);
        RequireClean(module.SerialNumber);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes(reinterpret_cast<const char*>(data), size);
    Read(bytes);
    // As a table whose head is right, so that its structures are reached.
    if (size < 8) return 0;
    bytes.replace(0, 8, "NFIT\xff\xff\xff\x7f");
    Read(bytes);
    return 0;
}
