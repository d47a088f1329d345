#include "transport/modinfo/module_index.h"

#include <algorithm>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

std::string_view TakeUntil(std::string_view& rest, char end_mark) {
    const std::size_t end = std::min(rest.find(end_mark), rest.size());
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

// "kernel/drivers/net/e1000e/e1000e.ko.xz" -> "e1000e"
std::string NameOfFile(std::string_view path) {
    path.remove_prefix(path.rfind('/') + 1);
    return ModuleName(path.substr(0, path.find(".ko")));
}

// Absolute paths and such that go up are none of a kernel's own index.
bool IsBelowFolder(std::string_view path) {
    return !path.empty() && path.front() != '/' && path.find("..") == std::string_view::npos;
}

}  // namespace

std::string ModuleName(std::string_view name) {
    std::string text(name);
    std::replace(text.begin(), text.end(), '-', '_');
    return text;
}

ModuleTexts ParseModulePaths(std::string_view dependencies, const ModuleNames& wanted) {
    ModuleTexts paths;
    while (!dependencies.empty()) {
        std::string_view line = TakeUntil(dependencies, '\n');
        const std::string_view path = TakeUntil(line, ':');
        if (!IsBelowFolder(path)) continue;
        std::string name = NameOfFile(path);
        if (wanted.count(name) != 0) paths.emplace(std::move(name), path);
    }
    return paths;
}

ModuleTexts ParseBuiltinDescriptions(std::string_view modinfo, const ModuleNames& wanted) {
    constexpr std::string_view kKey = ".description=";
    ModuleTexts descriptions;
    while (!modinfo.empty()) {
        const std::string_view entry = TakeUntil(modinfo, '\0');
        const std::size_t key = entry.find(kKey);
        if (key == std::string_view::npos) continue;
        std::string name = ModuleName(entry.substr(0, key));
        if (wanted.count(name) == 0) continue;
        descriptions.emplace(std::move(name), CleanStart(entry.substr(key + kKey.size()), 200));
    }
    return descriptions;
}

}  // namespace Vantix::transport
