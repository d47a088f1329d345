#include "tarsel/output_files.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

#include "common/files/file_path.h"

namespace tarsel {
namespace {

namespace fs = std::filesystem;

// A name of its own for each run: two runs may share a folder.
std::string AsideName(const std::string& file) {
    std::random_device random;
    return file + "." + std::to_string(random()) + ".new";
}

bool WriteWhole(const std::string& file, const std::string& content) {
    std::ofstream stream(Vantix::FilePath(file), std::ios::binary | std::ios::trunc);
    stream << content;
    stream.close();
    return !stream.fail();
}

}  // namespace

std::string FileIn(const std::string& folder, const std::string& name) {
    return Vantix::FileName(Vantix::FilePath(folder) / Vantix::FilePath(name));
}

std::string PrepareOutputFolder(const std::string& folder) {
    std::error_code error;
    const fs::path path = Vantix::FilePath(folder);
    fs::create_directories(path, error);
    if (!fs::is_directory(path, error)) {
        return "The output folder " + folder +
               " cannot be made; choose another one with --output DIR.";
    }
    const std::string probe = AsideName(FileIn(folder, kCommonResultName));
    const bool is_writable = WriteWhole(probe, "");
    fs::remove(Vantix::FilePath(probe), error);
    if (is_writable) return {};
    return "The output folder " + folder +
           " is not writable; choose another one with --output "
           "DIR.";
}

bool WriteFileAtomically(const std::string& file, const std::string& content) {
    std::error_code error;
    const std::string aside_name = AsideName(file);
    const fs::path aside = Vantix::FilePath(aside_name);
    const bool is_written = WriteWhole(aside_name, content);
    if (is_written) fs::rename(aside, Vantix::FilePath(file), error);
    if (is_written && !error) return true;
    fs::remove(aside, error);
    return false;
}

bool SetAsideFetchedScanXml(const std::string& folder,
                            std::chrono::system_clock::time_point started) {
    std::error_code error;
    const fs::path file = Vantix::FilePath(FileIn(folder, kScanXmlName));
    if (!fs::is_regular_file(fs::symlink_status(file, error))) return false;
    const auto written = fs::last_write_time(file, error);
    // Some systems tell the time of a file in whole seconds.
    const auto earliest = std::chrono::floor<std::chrono::seconds>(started);
    if (error || fs::file_time_type::clock::to_sys(written) < earliest) return false;
    fs::path aside = file;
    aside += ".remote";
    fs::rename(file, aside, error);
    return !error;
}

bool SetAsideOldScanXml(const std::string& folder) {
    std::error_code error;
    const std::string file = FileIn(folder, kScanXmlName);
    if (!fs::is_regular_file(fs::symlink_status(Vantix::FilePath(file), error))) return false;
    fs::rename(Vantix::FilePath(file), Vantix::FilePath(file + ".old"), error);
    return !error;
}

}  // namespace tarsel
