#include "platform/remote_command/tool_package.h"

#include <filesystem>
#include <string_view>

#include "common/files/file_path.h"

namespace Vantix::remote {
namespace {

namespace fs = std::filesystem;

// What a remote machine says of itself becomes part of a local file name.
bool IsWord(std::string_view text) {
    constexpr std::string_view kAllowed =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.-";
    constexpr std::size_t kLongest = 40;
    return !text.empty() && text.size() <= kLongest &&
           text.find_first_not_of(kAllowed) == std::string_view::npos;
}

}  // namespace

std::string ToolPackageName(const std::string& version, const std::string& system,
                            const std::string& machine) {
    if (!IsWord(version) || !IsWord(system) || !IsWord(machine)) return {};
    return "tarsel-" + version + "-" + system + "-" + machine + ".tar.gz";
}

ToolPackage FindToolPackage(const std::string& folder, const std::string& version,
                            const std::string& system, const std::string& machine) {
    const std::string name = ToolPackageName(version, system, machine);
    if (name.empty()) return {{}, "The remote machine does not say what it is."};
    std::error_code error;
    const fs::path file = FilePath(folder) / FilePath(name);
    if (!fs::is_regular_file(file, error)) {
        return {{}, "There is no " + name + " in " + folder + "."};
    }
    return {FileName(file), {}};
}

}  // namespace Vantix::remote
