// Builds a recorded machine: a folder that stands for "/", with the files and relative links that
// the kernel would show.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "support/temporary_folder.h"

namespace test_support {

class SystemTree {
  public:
    /// The folder that stands for "/".
    [[nodiscard]] std::string Root() const { return folder_.Path("root"); }

    /// `path` as on the machine ("/sys/class/dmi/id/bios_version"); folders are made.
    SystemTree& File(const std::string& path, const std::string& content) {
        std::ofstream(Made(path), std::ios::binary) << content;
        return *this;
    }

    /// A symbolic link, `target` as the kernel would write it ("../../../devices/...").
    SystemTree& Link(const std::string& path, const std::string& target) {
        std::filesystem::create_symlink(target, Made(path));
        return *this;
    }

    SystemTree& Folder(const std::string& path) {
        std::filesystem::create_directories(Root() + path);
        return *this;
    }

  private:
    [[nodiscard]] std::string Made(const std::string& path) const {
        const std::filesystem::path full(Root() + path);
        std::filesystem::create_directories(full.parent_path());
        return full.string();
    }

    TemporaryFolder folder_;
};

}  // namespace test_support
