#include "transport/ssh/process_transfer.h"

#include <algorithm>

#include "common/files/file_path.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr std::size_t kErrorsKept = 4096;
constexpr std::size_t kBlock = 64 * 1024;
// What comes while nobody reads: answers are a few bytes.
constexpr std::size_t kMostUnread = 1024 * 1024;

}  // namespace

ProcessTalk::ProcessTalk(SshLink& link)
    : link_(link),
      limit_(TransferLimit(link)),
      process_(
          link, [this](std::string_view bytes) { output_ += bytes; },
          [this](std::string_view bytes) {
              error_output_ += bytes.substr(0, kErrorsKept - error_output_.size());
          }) {}

ProcessTalk::~ProcessTalk() {
    const SshChannel& channel = process_.Channel();
    if (!channel.IsAtEnd() && !channel.HasResult()) process_.EndGroup("", "");
}

SshFailure ProcessTalk::Start(const std::string& command_line) {
    return process_.Start(command_line, limit_);
}

std::string ProcessTalk::Words() const {
    const std::string words = CleanStart(error_output_, 120);
    return words.empty() ? "it broke off" : words;
}

SshFailure ProcessTalk::Ended() const {
    if (auto failure = process_.NeverBegan()) return BrokenTransfer(failure.text);
    return BrokenTransfer(Words());
}

// One step forward, or why there will be none.
SshFailure ProcessTalk::More() {
    SshChannel& channel = process_.Channel();
    const std::uint64_t before = channel.BytesRead();
    if (channel.IsAtEnd()) return Ended();
    if (auto failure = link_.Pump(limit_)) return failure;
    if (channel.BytesRead() != before) limit_.Renew(link_.Target().limits.idle);
    return {};
}

SshFailure ProcessTalk::ReadLine(std::string& line) {
    std::size_t end = std::string::npos;
    while ((end = output_.find('\n')) == std::string::npos) {
        if (output_.size() > kLongestLine) return BrokenTransfer("an endless line came");
        if (auto failure = More()) return failure;
    }
    line = output_.substr(0, end);
    output_.erase(0, end + 1);
    return {};
}

SshFailure ProcessTalk::ReadByte(char& byte) {
    while (output_.empty()) {
        if (auto failure = More()) return failure;
    }
    byte = output_.front();
    output_.erase(0, 1);
    return {};
}

SshFailure ProcessTalk::ReadInto(PartFile& file, std::uint64_t count) {
    while (count > 0) {
        if (output_.empty()) {
            if (auto failure = More()) return failure;
            continue;
        }
        const auto length =
            static_cast<std::size_t>(std::min<std::uint64_t>(count, output_.size()));
        if (auto failure = file.Append(std::string_view(output_).substr(0, length))) return failure;
        output_.erase(0, length);
        count -= length;
    }
    return {};
}

SshFailure ProcessTalk::Send(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t written = process_.Channel().Write(bytes);
        bytes.remove_prefix(written);
        if (written > 0) limit_.Renew(link_.Target().limits.idle);
        if (process_.Channel().IsClosed()) return Ended();
        if (output_.size() > kMostUnread) return BrokenTransfer("it talks instead of listening");
        if (written > 0) continue;
        if (auto failure = link_.Pump(limit_)) return failure;
    }
    return {};
}

SshFailure ProcessTalk::SendFile(const UploadJob& job) {
    std::ifstream file(FilePath(job.local_file), std::ios::binary);
    std::string block;
    for (std::uint64_t left = job.size; left > 0; left -= block.size()) {
        block.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, left)));
        if (!file.read(block.data(), static_cast<std::streamsize>(block.size()))) {
            return LocalReadFailure(job.local_file);
        }
        if (auto failure = Send(block)) return failure;
    }
    return {};
}

SshFailure ProcessTalk::Finish() {
    const SshChannel& channel = process_.Channel();
    while (output_.empty() && !channel.IsClosed() && !channel.HasResult()) {
        if (auto failure = link_.Pump(limit_)) return failure;
    }
    if (!output_.empty()) return BrokenTransfer("more came than was announced");
    return channel.ExitStatus().value_or(-1) == 0 ? SshFailure{} : BrokenTransfer(Words());
}

}  // namespace Vantix::transport
