// The name of the machine that the command runs on.
#pragma once

#include <string>

namespace tarsel {

/// The name that the operating system has for this machine; empty when it does not tell.
std::string HostName();

}  // namespace tarsel
