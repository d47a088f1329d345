#include "transport/ssh/file_transfer.h"

#include <array>
#include <filesystem>
#include <functional>
#include <utility>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

using Way = std::pair<TransferWay, std::function<SshFailure()>>;

// What another way cannot mend.
bool IsFinal(SshProblem problem) {
    return problem != SshProblem::kFileTransfer && problem != SshProblem::kCommandNotStarted;
}

TransferOutcome TryWays(const std::array<Way, 3>& ways) {
    TransferOutcome outcome;
    for (const auto& [way, transfer] : ways) {
        SshFailure failure = transfer();
        if (!failure) {
            outcome.way = way;
            return outcome;
        }
        if (IsFinal(failure.problem)) {
            outcome.failure = std::move(failure);
            return outcome;
        }
        outcome.issues.push_back(std::string(TransferWayText(way)) + ": " + failure.text);
    }
    outcome.failure.problem = SshProblem::kFileTransfer;
    return outcome;
}

void AddPath(SshFailure& failure, const std::vector<std::string>& issues, const std::string& path,
             const char* what) {
    if (failure.problem != SshProblem::kFileTransfer) return;
    failure.text = "the file " + CleanText(path) + " could not be " + what;
    for (const auto& issue : issues) failure.text += "; " + issue;
}

}  // namespace

const char* TransferWayText(TransferWay way) {
    switch (way) {
        case TransferWay::kSftp:
            return "SFTP";
        case TransferWay::kScp:
            return "SCP";
        case TransferWay::kShell:
            return "shell";
        default:
            return "none";
    }
}

StepLimit TransferLimit(const SshLink& link) {
    return StepLimit::In(link.Target().limits.idle, SshProblem::kTimedOut,
                         "a file transfer with " + link.Place() + " came to a standstill");
}

SshFailure SizeDiffers(std::uint64_t expected, std::uint64_t actual) {
    return {SshProblem::kFileTransfer,
            std::to_string(actual) + " bytes arrived instead of " + std::to_string(expected)};
}

SshFailure NoSuchFile(const std::string& remote_path) {
    return {SshProblem::kNoSuchFile, "there is no file " + CleanText(remote_path)};
}

SshFailure LocalReadFailure(const std::string& path) {
    return {SshProblem::kLocalFile, "the file " + CleanText(path) + " cannot be read"};
}

TransferOutcome UploadFile(SshLink& link, const std::string& local_file,
                           const std::string& remote_path, unsigned mode) {
    UploadJob job{local_file, remote_path, mode, 0};
    std::error_code error;
    job.size = std::filesystem::file_size(local_file, error);
    if (error) {
        TransferOutcome outcome;
        outcome.failure = LocalReadFailure(local_file);
        return outcome;
    }
    TransferOutcome outcome = TryWays({{
        {TransferWay::kSftp, [&] { return UploadBySftp(link, job); }},
        {TransferWay::kScp, [&] { return UploadByScp(link, job); }},
        {TransferWay::kShell, [&] { return UploadByShell(link, job); }},
    }});
    if (!outcome.failure) outcome.bytes = job.size;
    AddPath(outcome.failure, outcome.issues, remote_path, "stored");
    return outcome;
}

TransferOutcome DownloadFile(SshLink& link, const std::string& remote_path,
                             const std::string& local_path, std::uint64_t max_bytes) {
    PartFile file(local_path, max_bytes);
    using Transfer = SshFailure (*)(SshLink&, const std::string&, PartFile&);
    const auto by = [&](Transfer transfer) {
        return [&link, &remote_path, &file, transfer]() -> SshFailure {
            if (auto failure = file.Begin()) return failure;
            return transfer(link, remote_path, file);
        };
    };
    TransferOutcome outcome = TryWays({{
        {TransferWay::kSftp, by(DownloadBySftp)},
        {TransferWay::kScp, by(DownloadByScp)},
        {TransferWay::kShell, by(DownloadByShell)},
    }});
    if (!outcome.failure) outcome.failure = file.Commit();
    if (!outcome.failure) outcome.bytes = file.Size();
    if (outcome.failure) outcome.way = TransferWay::kNone;
    AddPath(outcome.failure, outcome.issues, remote_path, "fetched");
    return outcome;
}

}  // namespace Vantix::transport
