// Finds the password for a target: option, environment variable or prompt, in this order.
#pragma once

#include <functional>
#include <string>

#include "tarsel/scan_arguments.h"

namespace tarsel {

/// The variable that may hold the password; it is gone from the environment afterwards.
inline constexpr const char* kPasswordVariable = "TARSEL_PASSWORD";

struct PasswordResult {
    bool is_found = false;
    bool is_interrupted = false;  ///< a signal came during the prompt
    std::string password;
    std::string error;  ///< one sentence when there is none; never holds any of it
};

/// Asks the sources of `arguments`; for this machine without a user the password is empty. Always
/// clears the variable, also when another source wins. `is_interrupted` tells whether the user
/// asked to stop already.
PasswordResult FindPassword(const ScanArguments& arguments,
                            const std::function<bool()>& is_interrupted);

}  // namespace tarsel
