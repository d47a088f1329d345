// Finds the password for a target, and the passphrase of a key: option, environment variable or
// prompt, in this order.
#pragma once

#include <functional>
#include <string>

#include "tarsel/scan_arguments.h"

namespace tarsel {

/// The variable that may hold the password; it is gone from the environment afterwards.
inline constexpr const char* kPasswordVariable = "TARSEL_PASSWORD";

inline constexpr const char* kPassphraseVariable = "TARSEL_SSH_PASSPHRASE";

struct PasswordResult {
    bool is_found = false;
    bool is_interrupted = false;  ///< a signal came during the prompt
    std::string password;
    std::string error;  ///< one sentence when there is none; never holds any of it
};

/// Asks the sources of `arguments`; for this machine without a user the password is empty. Always
/// clears the variable, also when another source wins. `is_interrupted` tells whether the user
/// asked to stop already. For a login over SSH an empty password is found where there is none: keys
/// may do, and with a key named in the arguments nobody is asked.
PasswordResult FindPassword(const ScanArguments& arguments,
                            const std::function<bool()>& is_interrupted);

/// The same for the passphrase of the private key in `arguments`; asks on the terminal only when
/// the key is encrypted, and finds an empty one when there is no key.
PasswordResult FindPassphrase(const ScanArguments& arguments,
                              const std::function<bool()>& is_interrupted);

}  // namespace tarsel
