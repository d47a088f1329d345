#include "platform/os/os.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
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

bool WriteAll(int file, const std::string& text) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = write(file, text.data() + written, text.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        written += static_cast<std::size_t>(count);
    }
    return true;
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

bool ReplaceFile(const std::string& path, const std::string& text) {
    std::random_device random;
    const std::string aside = path + "." + std::to_string(random()) + ".new";
    constexpr mode_t kUsualMode = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    // A name that somebody has guessed and taken is refused.
    const int file = open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kUsualMode);
    if (file < 0) return false;
    const bool is_written = WriteAll(file, text);
    const bool is_closed = close(file) == 0;
    if (is_written && is_closed && rename(aside.c_str(), path.c_str()) == 0) return true;
    unlink(aside.c_str());
    return false;
}

}  // namespace Vantix
