#include "transport/process/program_search.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace Vantix::transport {
namespace {

constexpr std::string_view kUsualFolders =
    "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";

template <typename Function>
void ForEachFolder(std::string_view folders, const Function& function) {
    while (!folders.empty()) {
        const std::size_t end = std::min(folders.find(':'), folders.size());
        const std::string_view folder = folders.substr(0, end);
        if (!folder.empty() && folder.front() == '/') function(std::string(folder));
        folders.remove_prefix(std::min(end + 1, folders.size()));
    }
}

}  // namespace

std::string ProgramFolders(const std::string& path) {
    std::vector<std::string> known;
    std::string folders;
    const auto add = [&](const std::string& folder) {
        if (std::find(known.begin(), known.end(), folder) != known.end()) return;
        known.push_back(folder);
        folders += (folders.empty() ? "" : ":") + folder;
    };
    ForEachFolder(path, add);
    ForEachFolder(kUsualFolders, add);
    return folders;
}

std::string FindProgram(const std::string& name, const std::string& folders,
                        const std::function<bool(const std::string&)>& is_program) {
    if (name.empty()) return {};
    if (name.find('/') != std::string::npos) return is_program(name) ? name : std::string();
    std::string found;
    ForEachFolder(folders, [&](const std::string& folder) {
        const std::string candidate = folder + "/" + name;
        if (found.empty() && is_program(candidate)) found = candidate;
    });
    return found;
}

}  // namespace Vantix::transport
