#include "platform/local/running_os.h"

namespace Vantix::local {

std::optional<OsName> RunningOs() {
    return std::nullopt;
}

}  // namespace Vantix::local
