#include "tarsel/state_folder.h"

#include <cstdlib>
#include <filesystem>

namespace tarsel {
namespace {

namespace fs = std::filesystem;

bool IsAbsolute(const char* path) {
    return path != nullptr && fs::path(path).is_absolute();
}

}  // namespace

std::string DurationFile(const char* state_home, const char* home) {
    fs::path state;
    if (IsAbsolute(state_home)) {
        state = state_home;
    } else if (IsAbsolute(home)) {
        state = fs::path(home) / ".local" / "state";
    } else {
        return {};
    }
    return (state / "tarsel" / "durations.txt").string();
}

std::string DurationFile() {
    return DurationFile(std::getenv("XDG_STATE_HOME"), std::getenv("HOME"));
}

}  // namespace tarsel
