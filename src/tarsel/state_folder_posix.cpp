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

std::string DurationFile() {
    const char* const state_home = std::getenv("XDG_STATE_HOME");
    const char* const home = std::getenv("HOME");
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

}  // namespace tarsel
