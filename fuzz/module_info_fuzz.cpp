// Any bytes as a kernel's module files: an object, the index of files, the index of built-in
// modules. Texts are clean and short, reads stay within their limits.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "transport/modinfo/module_index.h"
#include "transport/modinfo/module_object.h"

namespace {

using namespace Vantix::transport;  // NOLINT: the harness is about nothing else

constexpr std::size_t kMostBytes = 256 * 1024;

void RequireClean(const std::string& text) {
    const auto is_control = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
    if (text.size() > 1000 || std::any_of(text.begin(), text.end(), is_control)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const ByteSource source = [&](std::uint64_t offset, std::size_t count) {
        if (count > kMostBytes) std::abort();
        if (offset >= text.size()) return std::string();
        return std::string(text.substr(static_cast<std::size_t>(offset), count));
    };
    RequireClean(ReadModuleDescription(source));
    const ModuleNames wanted = {"", "fakenet", "fake_bus"};
    for (const auto& [name, description] : ParseBuiltinDescriptions(text, wanted)) {
        if (wanted.count(name) == 0) std::abort();
        RequireClean(description);
    }
    for (const auto& [name, path] : ParseModulePaths(text, wanted)) {
        if (wanted.count(name) == 0 || path.front() == '/') std::abort();
    }
    return 0;
}
