// What SystemRoot keeps, whatever the operating system is.

#include "transport/sysroot/system_root.h"

#include <utility>

#include "transport/sysroot/file_reading.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {

std::string SystemRoot::HostPath(std::string_view path) const {
    return folder_ + std::string(path);
}

std::optional<std::string> SystemRoot::ReadBytes(std::string_view path,
                                                 std::size_t max_bytes) const {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (const auto known = read_.find(path); known != read_.end()) return known->second;
    }
    // A link that leads out of a recorded tree would tell of this machine instead.
    const std::string place = PlaceOf(path);
    FileReading reading;
    if (!place.empty()) reading = ReadRegularFile(HostPath(place), max_bytes);
    if (reading.is_denied) AddDenied(path);
    AddRead(path, reading.bytes);
    return std::move(reading.bytes);
}

std::string SystemRoot::ReadText(std::string_view path) const {
    const std::optional<std::string> bytes = ReadBytes(path);
    return bytes ? CleanText(*bytes) : std::string();
}

std::vector<std::string> SystemRoot::DeniedPaths() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return {denied_.begin(), denied_.end()};
}

void SystemRoot::AddDenied(std::string_view path) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    denied_.emplace(path);
}

void SystemRoot::AddRead(std::string_view path, std::optional<std::string> bytes) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    read_.emplace(path, std::move(bytes));
}

bool SystemRoot::WasRead(std::string_view path) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return read_.find(path) != read_.end();
}

}  // namespace Vantix::transport
