// The log as scan code sees it: one object a record, written when the object dies.
//
// Deliberately not here: where records go and what is masked in them (log_settings.h).
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "common/export.h"

namespace Vantix {

/// One log record. Levels: 1 failure, 2 ignored failure or return code, 3 progress, 4 detail.
/// Numbers written to Stream() follow the classic locale; booleans print as 1 and 0 unless the
/// writer sets boolalpha. The destructor writes and flushes the record and never throws. A level
/// that is switched off costs no formatting: Stream() then swallows what it is given.
class TARSEL_EXPORT Log {
  public:
    /// `source` and `line` name the place in the code; `source` must outlive the object.
    Log(int level, const char* source, int line);
    ~Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    std::ostream& Stream();

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace Vantix

/// Writes one entry of the timing trace. `tag` is "[B]" before and "[E]" after a timed step,
/// `step` names the step (15 machine type, 21 BMC inventory, ...), `code` the step's outcome.
void AddDetailTimeDebugLog(int level, const char* source, int line, const char* tag, int step,
                           int code, const std::string& detail);
