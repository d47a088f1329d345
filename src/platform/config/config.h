// The tool's own settings file, "global.config" beside this library: one "key = value" a line.
#pragma once

#include <string>

namespace Vantix {

/// The integer stored under `key` in the configuration file beside this library; `default_value`
/// when the file, the key or a number is missing. Lines beginning with '#' are comments.
int GetGlobalConfigValue(const std::string& key, int default_value);

}  // namespace Vantix
