// The index files of a Linux kernel's modules (modules(5), depmod(8)): where a module's file is,
// and what the built-in ones say of themselves.
//
// Pure: a file's text in, values out. Keeps only what is asked for: a kernel has thousands.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace Vantix::transport {

using ModuleNames = std::set<std::string, std::less<>>;
using ModuleTexts = std::map<std::string, std::string, std::less<>>;

/// The name as the kernel shows it: "snd-hda-intel" is "snd_hda_intel".
[[nodiscard]] std::string ModuleName(std::string_view name);

/// From "modules.dep": name to path below the folder of the kernel ("kernel/net/x/x.ko").
[[nodiscard]] ModuleTexts ParseModulePaths(std::string_view dependencies,
                                           const ModuleNames& wanted);

/// From "modules.builtin.modinfo": name to clean description.
[[nodiscard]] ModuleTexts ParseBuiltinDescriptions(std::string_view modinfo,
                                                   const ModuleNames& wanted);

}  // namespace Vantix::transport
