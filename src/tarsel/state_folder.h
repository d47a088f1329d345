// Where the command keeps what it learnt for the next time.
#pragma once

#include <string>

namespace tarsel {

/// The file of remembered durations, in UTF-8, below the user's state folder: XDG_STATE_HOME where
/// it is an absolute path, else ".local/state" below HOME; on Windows LOCALAPPDATA. Empty when the
/// environment names no absolute path: nothing is remembered then.
std::string DurationFile();

}  // namespace tarsel
