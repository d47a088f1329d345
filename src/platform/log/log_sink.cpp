#include "platform/log/log_sink.h"

#include <spdlog/details/log_msg.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <mutex>

#include "common/files/file_path.h"
#include "platform/log/log_record.h"
#include "platform/log/log_settings.h"
#include "platform/log/secret_masker.h"
#include "platform/os/os.h"

namespace Vantix {
namespace {

using FileSink = spdlog::sinks::rotating_file_sink_st;
constexpr std::size_t kSmallestFile = 1024;

struct Outputs {
    std::mutex mutex;
    std::unique_ptr<FileSink> file;
    int file_level = 0;
    int console_level = 0;
};

std::atomic<int> highest_level{0};

Outputs& TheOutputs() {
    // Never destroyed: objects with static lifetime may still log while the process ends.
    static auto* const outputs = new Outputs;
    return *outputs;
}

std::unique_ptr<FileSink> OpenFile(const LogSettings& settings) {
    if (!MakePrivateFile(settings.file)) return nullptr;
    spdlog::file_event_handlers handlers;
    // The library opens files with the user's default mode; a file that is there already keeps its
    // own, so it is made first, also after each rotation.
    handlers.before_open = [](const spdlog::filename_t& name) {
        MakePrivateFile(FileName(std::filesystem::path(name)));
    };
    try {
        auto sink = std::make_unique<FileSink>(FilePath(settings.file).native(),
                                               std::max(settings.max_file_bytes, kSmallestFile),
                                               settings.max_files, false, handlers);
        sink->set_formatter(std::make_unique<spdlog::pattern_formatter>(
            "%v", spdlog::pattern_time_type::local, "\n"));
        return sink;
    } catch (const std::exception&) {
        return nullptr;
    }
}

void WriteToFile(FileSink& sink, const std::string& record) {
    sink.log(spdlog::details::log_msg({}, spdlog::level::info, record));
    sink.flush();
}

void WriteToConsole(const std::string& record) {
    std::fwrite((record + "\n").data(), 1, record.size() + 1, stderr);
    std::fflush(stderr);
}

}  // namespace

bool IsLogLevelWanted(int level) noexcept {
    return level <= highest_level.load(std::memory_order_relaxed);
}

void WriteLogRecord(int level, const char* source, int line, const std::string& text) noexcept {
    try {
        const std::string record =
            FormatLogRecord(level, source, line, SecretMasker::Instance().Mask(text),
                            std::chrono::system_clock::now());
        Outputs& outputs = TheOutputs();
        const std::lock_guard<std::mutex> lock(outputs.mutex);
        if (level <= outputs.console_level) WriteToConsole(record);
        if (outputs.file && level <= outputs.file_level) WriteToFile(*outputs.file, record);
    } catch (const std::exception&) {
        // A full disk must not end a scan.
    }
}

std::string ConfigureLog(const LogSettings& settings) {
    std::unique_ptr<FileSink> file = settings.file.empty() ? nullptr : OpenFile(settings);
    const bool failed = !settings.file.empty() && !file;
    Outputs& outputs = TheOutputs();
    const std::lock_guard<std::mutex> lock(outputs.mutex);
    outputs.file = std::move(file);
    outputs.file_level = outputs.file ? settings.file_level : 0;
    outputs.console_level = settings.console_level;
    highest_level = std::max(outputs.file_level, outputs.console_level);
    if (!failed) return {};
    return "The log file " + settings.file +
           " cannot be written; check that its folder exists and is writable.";
}

void ShutdownLog() {
    highest_level = 0;
    {
        Outputs& outputs = TheOutputs();
        const std::lock_guard<std::mutex> lock(outputs.mutex);
        outputs.file.reset();
        outputs.file_level = 0;
        outputs.console_level = 0;
    }
    SecretMasker::Instance().ForgetAll();
}

}  // namespace Vantix
