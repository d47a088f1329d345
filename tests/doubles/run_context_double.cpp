// The scan code only carries the run's context about; asking it anything is a mistake.
#include "platform/connection/run_context.h"

namespace Vantix::VantixConnection {

RunContext::RunContext(int login_attempts)
    : login_attempts_(login_attempts), last_failure_(0, "") {}
RunContext::~RunContext() = default;

}  // namespace Vantix::VantixConnection
