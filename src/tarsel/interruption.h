// Turns the wish to stop (Ctrl-C, a service manager, a closed terminal) into RunContext::Cancel.
#pragma once

#include <memory>

#include "platform/connection/run_context.h"

namespace tarsel {

/// While it lives, the first of SIGINT, SIGTERM and SIGHUP cancels the run, so that the session at
/// the target is ended in order; the second one ends the process at once. Signals that the process
/// was started to ignore stay ignored. One object at a time. SIGPIPE is ignored from then on.
class Interruption {
  public:
    explicit Interruption(std::shared_ptr<Vantix::VantixConnection::RunContext> run);
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// The signal that came, 0 for none.
    [[nodiscard]] static int Signal();

  private:
    std::shared_ptr<Vantix::VantixConnection::RunContext> run_;
};

}  // namespace tarsel
