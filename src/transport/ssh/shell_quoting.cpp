#include "transport/ssh/remote_shell.h"

namespace Vantix::transport {

std::string QuoteForShell(const std::string& word) {
    std::string quoted = "'";
    for (const char letter : word) {
        if (letter == '\'') {
            quoted += "'\\''";
        } else if (letter != '\0') {
            quoted += letter;
        }
    }
    return quoted + "'";
}

std::string QuotePathForShell(const std::string& path) {
    return QuoteForShell(path.rfind('-', 0) == 0 ? "./" + path : path);
}

}  // namespace Vantix::transport
