#include "platform/local/kernel_name.h"

#include <sys/utsname.h>

#include "transport/text/text_cleaning.h"

namespace Vantix::local {

std::string RunningArchitecture() {
    struct utsname names = {};
    return ::uname(&names) == 0 ? transport::CleanText(names.machine) : std::string();
}

}  // namespace Vantix::local
