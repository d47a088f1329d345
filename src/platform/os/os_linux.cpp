#include "platform/os/os.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

namespace Vantix {
namespace {

namespace fs = std::filesystem;

// A program found through the search path is known to the loader by its bare name only; the
// kernel knows better. This concerns programs that carry these objects themselves, such as tests.
fs::path PathOfModule(const char* name_from_loader) {
    std::error_code error;
    fs::path path(name_from_loader);
    if (!path.has_parent_path()) path = fs::read_symlink("/proc/self/exe", error);
    if (error) return {};
    const fs::path canonical = fs::canonical(path, error);
    if (!error) return canonical;
    const fs::path absolute = fs::absolute(path, error);
    return error ? fs::path() : absolute;
}

std::string FindModuleDirectory() {
    Dl_info info{};
    const auto* own_address = reinterpret_cast<const void*>(&FindModuleDirectory);
    if (dladdr(own_address, &info) == 0 || info.dli_fname == nullptr) return {};
    return DirectoryOfModuleFile(PathOfModule(info.dli_fname).string());
}

}  // namespace

std::string GetModuleDirectory() {
    // Asked once: a relative name from the loader is only right until the program changes its
    // current folder.
    static const std::string directory = FindModuleDirectory();
    return directory;
}

std::string DirectoryOfModuleFile(const std::string& module_file) {
    const std::size_t separator = module_file.rfind('/');
    return separator == std::string::npos ? std::string() : module_file.substr(0, separator + 1);
}

void SleepMilliseconds(std::uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

std::int64_t MonotonicSeconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

bool MakePrivateFile(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK,
                          S_IRUSR | S_IWUSR);
    if (file < 0) return false;
    struct stat status {};
    // Never touch the mode of a device or of somebody else's file.
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid()) {
        static_cast<void>(fchmod(file, S_IRUSR | S_IWUSR));
    }
    close(file);
    return true;
}

}  // namespace Vantix
