// Where the command keeps what it learnt for the next time.
#pragma once

#include <string>

namespace tarsel {

/// The file of remembered durations below the user's state folder, given the values of
/// XDG_STATE_HOME and HOME (null: not set): the former when it is an absolute path, else
/// ".local/state" below the latter. Empty when there is neither: nothing is remembered then.
std::string DurationFile(const char* state_home, const char* home);

/// The same for this process.
std::string DurationFile();

}  // namespace tarsel
