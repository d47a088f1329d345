#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <string>

#include "common/files/file_path.h"
#include "transport/ssh/file_transfer.h"
#include "transport/ssh/sftp_codec.h"
#include "transport/ssh/ssh_channel.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

// What every server takes in one packet (the draft asks for 34000 bytes).
constexpr std::uint32_t kPacketBytes = 32 * 1024;
constexpr std::size_t kRequestsInFlight = 16;

class SftpTalk {
  public:
    explicit SftpTalk(SshLink& link)
        : link_(link),
          limit_(TransferLimit(link)),
          channel_(
              link, [this](std::string_view bytes) { input_ += bytes; }, nullptr) {}

    SshFailure Begin() {
        if (auto failure = channel_.StartSubsystem("sftp", limit_)) return failure;
        SftpReply reply;
        Send(SftpInit());
        if (auto failure = Next(reply)) return failure;
        if (reply.kind == SftpReplyKind::kVersion && reply.id >= 3) return {};
        return {SshProblem::kFileTransfer, "SFTP of an unknown version"};
    }

    SshFailure Open(const std::string& path, std::uint32_t flags,
                    std::optional<std::uint32_t> mode) {
        SftpReply reply;
        Send(SftpOpen(NewId(), path, flags, mode));
        if (auto failure = Next(reply)) return failure;
        if (reply.kind == SftpReplyKind::kStatus && reply.status == kSftpNoSuchFile) {
            return NoSuchFile(path);
        }
        if (reply.kind != SftpReplyKind::kHandle) return Refused("open", reply);
        handle_ = reply.text;
        return {};
    }

    SshFailure Size(std::optional<std::uint64_t>& size) {
        SftpReply reply;
        Send(SftpStat(NewId(), handle_));
        if (auto failure = Next(reply)) return failure;
        if (reply.kind != SftpReplyKind::kAttributes) return Refused("size", reply);
        size = reply.size;
        return {};
    }

    /// Sends one request and expects an "OK".
    SshFailure Do(const char* what, const std::string& request) {
        SftpReply reply;
        Send(request);
        if (auto failure = Next(reply)) return failure;
        return IsOk(reply) ? SshFailure{} : Refused(what, reply);
    }

    static bool IsOk(const SftpReply& reply) {
        return reply.kind == SftpReplyKind::kStatus && reply.status == kSftpOk;
    }

    static SshFailure Refused(const char* what, const SftpReply& reply) {
        return {SshProblem::kFileTransfer, std::string("SFTP refused to ") + what + ": " +
                                               CleanStart(reply.text) + " (status " +
                                               std::to_string(reply.status) + ")"};
    }

    std::uint32_t NewId() { return ++last_id_; }
    [[nodiscard]] const std::string& Handle() const { return handle_; }

    void Send(const std::string& packet) {
        output_ += packet;
        Push();
    }

    /// Waits for the next reply, while what is still to be sent leaves.
    SshFailure Next(SftpReply& reply) {
        limit_.Renew(link_.Target().limits.idle);
        for (;;) {
            const std::size_t left = output_.size();
            Push();
            const SftpTake taken = TakeSftpReply(input_, reply);
            if (taken == SftpTake::kReply) return {};
            if (taken == SftpTake::kBroken || channel_.IsAtEnd()) {
                return {SshProblem::kFileTransfer, "SFTP broke off"};
            }
            if (output_.size() < left) limit_.Renew(link_.Target().limits.idle);
            if (auto failure = link_.Pump(limit_)) return failure;
        }
    }

  private:
    void Push() {
        while (!output_.empty()) {
            const std::size_t written = channel_.Write(output_);
            if (written == 0) return;
            output_.erase(0, written);
        }
    }

    SshLink& link_;
    StepLimit limit_;
    std::string input_;
    std::string output_;
    std::string handle_;
    std::uint32_t last_id_ = 0;
    SshChannel channel_;
};

// Asks for several blocks ahead and appends them in their order.
class SftpDownload {
  public:
    SftpDownload(SftpTalk& talk, PartFile& file, std::optional<std::uint64_t> size)
        : talk_(talk), file_(file), size_(size) {}

    SshFailure Run() {
        while (!is_at_end_) {
            AskAhead();
            if (asked_.empty()) break;
            SftpReply reply;
            if (auto failure = talk_.Next(reply)) return failure;
            if (auto failure = Take(reply)) return failure;
        }
        if (size_ && *size_ != 0 && file_.Size() != *size_) {
            return SizeDiffers(*size_, file_.Size());
        }
        return {};
    }

  private:
    struct Block {
        std::uint64_t offset = 0;
        std::uint32_t length = 0;
    };

    // A size of 0 is told of files that are made while they are read, too.
    [[nodiscard]] bool KnowsSize() const { return size_ && *size_ != 0; }

    void AskAhead() {
        const std::size_t most = KnowsSize() ? kRequestsInFlight : 1;
        while (asked_.size() < most && (!KnowsSize() || next_ < *size_)) {
            const std::uint64_t left = KnowsSize() ? *size_ - next_ : kPacketBytes;
            Ask({next_, static_cast<std::uint32_t>(std::min<std::uint64_t>(left, kPacketBytes))});
            next_ += asked_.rbegin()->second.length;
        }
    }

    void Ask(const Block& block) {
        const std::uint32_t id = talk_.NewId();
        asked_[id] = block;
        talk_.Send(SftpReadAt(id, talk_.Handle(), block.offset, block.length));
    }

    SshFailure Take(const SftpReply& reply) {
        const auto found = asked_.find(reply.id);
        if (found == asked_.end()) return OutOfTurn();
        const Block block = found->second;
        asked_.erase(found);
        if (reply.kind == SftpReplyKind::kStatus && reply.status == kSftpEof) {
            is_at_end_ = true;
            return {};
        }
        if (reply.kind != SftpReplyKind::kData) return SftpTalk::Refused("read", reply);
        // Replies come in the order of the requests; a server that mixes them is left to other
        // ways.
        const std::size_t count = reply.text.size();
        if (block.offset != file_.Size() || count == 0 || count > block.length) return OutOfTurn();
        if (auto failure = file_.Append(reply.text)) return failure;
        if (count == block.length) return {};
        return AskAgainFrom(block.offset + count);
    }

    // A short answer: the rest of it and what was asked for behind it comes anew.
    SshFailure AskAgainFrom(std::uint64_t offset) {
        while (!asked_.empty()) {
            SftpReply dropped;
            if (auto failure = talk_.Next(dropped)) return failure;
            if (asked_.erase(dropped.id) == 0) return OutOfTurn();
        }
        next_ = offset;
        return {};
    }

    static SshFailure OutOfTurn() { return BrokenTransfer("SFTP answered out of turn"); }

    SftpTalk& talk_;
    PartFile& file_;
    const std::optional<std::uint64_t> size_;
    std::map<std::uint32_t, Block> asked_;
    std::uint64_t next_ = 0;
    bool is_at_end_ = false;
};

SshFailure SendBlocks(SftpTalk& talk, std::ifstream& file, const UploadJob& job) {
    std::string block(kPacketBytes, '\0');
    std::uint64_t offset = 0;
    std::size_t in_flight = 0;
    while (offset < job.size || in_flight > 0) {
        while (offset < job.size && in_flight < kRequestsInFlight) {
            const std::uint64_t length = std::min<std::uint64_t>(kPacketBytes, job.size - offset);
            block.resize(static_cast<std::size_t>(length));
            if (!file.read(block.data(), static_cast<std::streamsize>(length))) {
                return LocalReadFailure(job.local_file);
            }
            talk.Send(SftpWriteAt(talk.NewId(), talk.Handle(), offset, block));
            offset += length;
            ++in_flight;
        }
        SftpReply reply;
        if (auto failure = talk.Next(reply)) return failure;
        if (!SftpTalk::IsOk(reply)) return SftpTalk::Refused("write", reply);
        --in_flight;
    }
    return {};
}

}  // namespace

SshFailure DownloadBySftp(SshLink& link, const std::string& remote_path, PartFile& file) {
    SftpTalk talk(link);
    if (auto failure = talk.Begin()) return failure;
    if (auto failure = talk.Open(remote_path, kSftpRead, std::nullopt)) return failure;
    std::optional<std::uint64_t> size;
    if (auto failure = talk.Size(size)) return failure;
    if (size && *size > file.MaxBytes()) return TooLarge(file.MaxBytes());
    return SftpDownload(talk, file, size).Run();
}

SshFailure UploadBySftp(SshLink& link, const UploadJob& job) {
    std::ifstream file(FilePath(job.local_file), std::ios::binary);
    if (!file) return LocalReadFailure(job.local_file);
    SftpTalk talk(link);
    if (auto failure = talk.Begin()) return failure;
    if (auto failure = talk.Open(job.remote_path, kSftpWriteNew, job.mode)) return failure;
    if (auto failure =
            talk.Do("set the mode", SftpSetMode(talk.NewId(), talk.Handle(), job.mode))) {
        return failure;
    }
    if (auto failure = SendBlocks(talk, file, job)) return failure;
    std::optional<std::uint64_t> size;
    if (auto failure = talk.Size(size)) return failure;
    if (size && *size != job.size) return SizeDiffers(job.size, *size);
    return talk.Do("close", SftpClose(talk.NewId(), talk.Handle()));
}

}  // namespace Vantix::transport
