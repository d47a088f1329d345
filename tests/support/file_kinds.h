// Files that not every system can hold: links, pipes, files that nobody may read, names with a
// colon. A test that needs one is skipped where there are none.
#pragma once

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "common/files/file_path.h"
#include "support/skip_test.h"
#include "support/temporary_folder.h"

namespace test_support {

/// A symbolic link at `path` with the text `target`.
inline void MakeLink(const std::string& target, const std::string& path) {
    std::error_code error;
    std::filesystem::create_symlink(Vantix::FilePath(target), Vantix::FilePath(path), error);
    if (error == std::errc::function_not_supported || error == std::errc::operation_not_permitted) {
        SkipTest("symbolic links cannot be made here: " + error.message());
    }
    if (error) throw std::filesystem::filesystem_error("no link " + path, error);
}

inline void MakePipe([[maybe_unused]] const std::string& path) {
#ifdef _WIN32
    SkipTest("Windows has no pipes among its files");
#else
    if (::mkfifo(path.c_str(), 0600) != 0) throw std::runtime_error("no pipe " + path);
#endif
}

/// Nobody but an administrator may read the file or folder any more: see UnprivilegedUser.
inline void ForbidFile(const std::string& path) {
    using std::filesystem::perms;
    const std::filesystem::path file = Vantix::FilePath(path);
    const perms before = std::filesystem::status(file).permissions();
    std::filesystem::permissions(file, perms::none);
    if (std::filesystem::status(file).permissions() == perms::none) return;
    std::filesystem::permissions(file, before);
    SkipTest("the right to read a file cannot be taken away here by its mode");
}

/// Whether a file can be called "00:1" here; Windows reads more into a colon.
inline bool ColonsAreOrdinaryInFileNames() {
    static const bool are_ordinary = [] {
        const TemporaryFolder folder;
        std::ofstream(Vantix::FilePath(folder.Path("00:1"))) << "";
        const std::filesystem::directory_iterator first(Vantix::FilePath(folder.Path(".")));
        return first != end(first) && Vantix::FileName(first->path()).ends_with("00:1");
    }();
    return are_ordinary;
}

/// Skips the test where this system has no such file names: kernels like "0000:3b:00.0" and "0:1".
inline void NeedFileNames(const std::string& path) {
    const std::size_t colon = path.find(':');
    if (colon == std::string::npos) return;
    if (!ColonsAreOrdinaryInFileNames()) SkipTest("there are no file names with colons here");
    if (!std::filesystem::path("0:1").has_root_name()) return;
    for (std::size_t slash = path.find('/'); slash < path.size();
         slash = path.find('/', slash + 1)) {
        if (slash + 2 < path.size() && path[slash + 2] == ':') {
            SkipTest("a file name that begins as \"0:\" is taken for a drive here");
        }
    }
}

}  // namespace test_support
