// The process-wide register of code texts, filled while the constants of result_codes.h initialise.
//
// Deliberately not here: the texts of the update-error table (update_error_table.h) and the choice
// between the two (GetResultMessage in tarsel_result.h).
#pragma once

#include <string>

#include "common/export.h"

/// Usable from the static initialisation of any file, in any order. Registration is meant for the
/// single-threaded start of the process; look-ups afterwards may come from any thread.
class TARSEL_EXPORT ResultCodeRegistry {
  public:
    /// Stores `text` under the full code `(module << 16) | code`, which is returned. A module below
    /// 1 means the common codes. An existing text is replaced; registering a code again is normal
    /// (every file that includes the constants may do it) and never reported.
    static int Register(int module, int code, const char* text);

    /// The text of a full code: looked up among the common codes first, then among those of
    /// `module`; "Unknow error" (kept spelling) when it is in neither. Mind the order of the
    /// arguments, which is not that of Register.
    [[nodiscard]] static std::string GetRegisteredMessage(int code, int module);
};
