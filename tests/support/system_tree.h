// Builds a recorded machine: a folder that stands for "/", with the files and relative links that
// the kernel would show. A test that asks for what this system cannot hold is skipped: see
// file_kinds.h.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "common/files/file_path.h"
#include "support/file_kinds.h"
#include "support/temporary_folder.h"

namespace test_support {

class SystemTree {
  public:
    /// The folder that stands for "/".
    [[nodiscard]] std::string Root() const { return folder_.Path("root"); }

    /// `path` as on the machine ("/sys/class/dmi/id/bios_version"); folders are made.
    SystemTree& File(const std::string& path, const std::string& content) {
        std::ofstream(Vantix::FilePath(Made(path)), std::ios::binary) << content;
        return *this;
    }

    /// A symbolic link, `target` as the kernel would write it ("../../../devices/...").
    SystemTree& Link(const std::string& path, const std::string& target) {
        MakeLink(target, Made(path));
        return *this;
    }

    SystemTree& Pipe(const std::string& path) {
        MakePipe(Made(path));
        return *this;
    }

    /// Takes all rights to a file or folder away; see UnprivilegedUser.
    SystemTree& Forbid(const std::string& path) {
        ForbidFile(Root() + path);
        return *this;
    }

    SystemTree& Folder(const std::string& path) {
        NeedFileNames(path);
        std::filesystem::create_directories(Vantix::FilePath(Root() + path));
        return *this;
    }

  private:
    [[nodiscard]] std::string Made(const std::string& path) const {
        NeedFileNames(path);
        const std::string full = Root() + path;
        std::filesystem::create_directories(Vantix::FilePath(full).parent_path());
        return full;
    }

    TemporaryFolder folder_;
};

}  // namespace test_support
