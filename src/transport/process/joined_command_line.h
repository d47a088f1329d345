// How Windows hands arguments to a program: as one text that the program takes apart again.
#pragma once

#include <string>
#include <vector>

namespace Vantix::transport {

/// The words joined and quoted so that the C run-time library of the program finds the same words
/// ("Parsing C command-line arguments").
[[nodiscard]] std::string JoinedCommandLine(const std::vector<std::string>& words);

}  // namespace Vantix::transport
