// A folder of its own for one test, removed with everything in it at the end.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace test_support {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::random_device random;
        const std::string name =
            "tarsel-test-" + std::to_string(random()) + "-" + std::to_string(random());
        path_ = std::filesystem::temp_directory_path() / name;
        std::filesystem::create_directories(path_);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string Path(const std::string& name) const {
        return FileName(path_) + "/" + name;
    }

    /// Writes a file and returns its full path.
    std::string Write(const std::string& name, const std::string& content) const {
        std::ofstream(FilePath(Path(name)), std::ios::binary) << content;
        return Path(name);
    }

    [[nodiscard]] std::string Read(const std::string& name) const { return ReadFile(Path(name)); }

    /// Empty when there is no such file, also when it goes while it is read, as those of processes
    /// do.
    static std::string ReadFile(const std::string& path) {
        std::ifstream file(FilePath(path), std::ios::binary);
        std::ostringstream content;
        content << file.rdbuf();
        return content.str();
    }

  private:
    // UTF-8 on every system. Not from the library: tests of the simulators know nothing of it.
    static std::filesystem::path FilePath(const std::string& name) {
        return std::u8string(name.begin(), name.end());
    }
    static std::string FileName(const std::filesystem::path& path) {
        const std::u8string name = path.u8string();
        return {name.begin(), name.end()};
    }

    std::filesystem::path path_;
};

}  // namespace test_support
