#include "platform/estimate/estimate.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "common/files/file_path.h"
#include "platform/estimate/duration_table.h"
#include "platform/os/os.h"

namespace {

namespace fs = std::filesystem;

constexpr int kDefaultOobSeconds = 60;
constexpr int kDefaultInbandSeconds = 120;

Vantix::DurationTable ReadTable(const std::string& file) {
    if (file.empty()) return {};
    std::ifstream text(Vantix::FilePath(file), std::ios::binary);
    return Vantix::DurationTable::Read(text);
}

// Written aside and renamed, so that a reader or a crash never meets half a table.
void WriteTable(const std::string& file, const Vantix::DurationTable& table) {
    std::error_code error;
    const fs::path target = Vantix::FilePath(file);
    if (target.has_parent_path()) fs::create_directories(target.parent_path(), error);
    const std::string aside = file + ".new";
    bool is_written = false;
    if (Vantix::MakePrivateFile(aside)) {
        std::ofstream text(Vantix::FilePath(aside), std::ios::binary | std::ios::trunc);
        table.Write(text);
        text.close();
        is_written = !text.fail();
    }
    if (is_written) fs::rename(Vantix::FilePath(aside), target, error);
    if (!is_written || error) fs::remove(Vantix::FilePath(aside), error);
}

}  // namespace

TimeEstimation* TimeEstimation::getInstance() {
    static TimeEstimation instance;
    return &instance;
}

std::string TimeEstimation::KeyFor(const std::string& key, const std::string& machine_type) {
    return key + "/" + machine_type;
}

int TimeEstimation::GetScanOOBTimeEstimation(const std::string& key,
                                             const std::string& machine_type) {
    return ReadTable(file_).Find(KeyFor(key, machine_type)).value_or(kDefaultOobSeconds);
}

int TimeEstimation::GetScanInbandTimeEstimation(const std::string& mt_arch, const std::string& os,
                                                int duration_seconds) {
    const int total = ReadTable(file_).Find(KeyFor(mt_arch, os)).value_or(kDefaultInbandSeconds);
    return std::max(total, duration_seconds);
}

void TimeEstimation::RememberScan(const std::string& key, int duration_seconds) {
    if (file_.empty()) return;
    Vantix::DurationTable table = ReadTable(file_);
    table.Remember(key, duration_seconds);
    WriteTable(file_, table);
}

void TimeEstimation::UseFile(const std::string& file) {
    file_ = file;
}
