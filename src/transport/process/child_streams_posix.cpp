#include "transport/process/child_streams_posix.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

namespace Vantix::transport {
namespace {

constexpr int kFirstUnusedNumber = 64;
constexpr std::size_t kReadAtOnce = 16384;

bool WriteAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace

OwnedDescriptor& OwnedDescriptor::operator=(OwnedDescriptor&& other) noexcept {
    if (this != &other) {
        Close();
        number_ = other.Release();
    }
    return *this;
}

void OwnedDescriptor::Close() {
    if (number_ >= 0) close(number_);
    number_ = -1;
}

int OwnedDescriptor::Release() {
    return std::exchange(number_, -1);
}

OwnedDescriptor MemoryFile(const std::string& text) {
    OwnedDescriptor file(memfd_create("tarsel", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file.IsOpen() || !WriteAll(file.Number(), text) ||
        lseek(file.Number(), 0, SEEK_SET) != 0) {
        return {};
    }
    fcntl(file.Number(), F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_GROW | F_SEAL_SHRINK | F_SEAL_SEAL);
    return file;
}

OwnedDescriptor MovedUp(OwnedDescriptor descriptor) {
    if (!descriptor.IsOpen() || descriptor.Number() >= kFirstUnusedNumber) return descriptor;
    return OwnedDescriptor(fcntl(descriptor.Number(), F_DUPFD_CLOEXEC, kFirstUnusedNumber));
}

bool ChildStream::Open() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    read_end_ = OwnedDescriptor(ends[0]);
    write_end_ = MovedUp(OwnedDescriptor(ends[1]));
    return write_end_.IsOpen() && fcntl(read_end_.Number(), F_SETFL, O_NONBLOCK) == 0;
}

void ChildStream::Drain(std::size_t limit) {
    std::array<char, kReadAtOnce> buffer;
    while (read_end_.IsOpen()) {
        const ssize_t count = read(read_end_.Number(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN) return;
        if (count <= 0) {
            read_end_.Close();
            return;
        }
        const std::size_t room = limit - std::min(limit, text_.size());
        const std::size_t kept = std::min(room, static_cast<std::size_t>(count));
        text_.append(buffer.data(), kept);
        is_cut_ = is_cut_ || kept < static_cast<std::size_t>(count);
        // A program that writes without end must not keep the caller from looking at the time.
        if (static_cast<std::size_t>(count) < buffer.size() || kept == 0) return;
    }
}

void DrainBoth(ChildStream& first, ChildStream& second, std::size_t limit,
               std::chrono::milliseconds wait) {
    // poll() leaves out negative numbers: an ended stream needs no case of its own.
    std::array<pollfd, 2> watched = {{{first.ReadEnd(), POLLIN, 0}, {second.ReadEnd(), POLLIN, 0}}};
    if (poll(watched.data(), watched.size(), static_cast<int>(wait.count())) <= 0) return;
    if (watched[0].revents != 0) first.Drain(limit);
    if (watched[1].revents != 0) second.Drain(limit);
}

}  // namespace Vantix::transport
