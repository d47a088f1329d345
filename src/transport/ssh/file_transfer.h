// Files to and from the server, each by one way of transport.
//
// Every function either moves the whole file or says why not. Progress is waited for as long as the
// target's idle limit; the caller decides what to try next.
#pragma once

#include <string>

#include "transport/ssh/part_file.h"
#include "transport/ssh/remote_shell.h"
#include "transport/ssh/ssh_link.h"

namespace Vantix::transport {

struct UploadJob {
    std::string local_file;
    std::string remote_path;
    unsigned mode = 0600;
    std::uint64_t size = 0;  ///< of the local file
};

[[nodiscard]] SshFailure UploadBySftp(SshLink& link, const UploadJob& job);
[[nodiscard]] SshFailure UploadByScp(SshLink& link, const UploadJob& job);
[[nodiscard]] SshFailure UploadByShell(SshLink& link, const UploadJob& job);

[[nodiscard]] SshFailure DownloadBySftp(SshLink& link, const std::string& remote_path,
                                        PartFile& file);
[[nodiscard]] SshFailure DownloadByScp(SshLink& link, const std::string& remote_path,
                                       PartFile& file);
[[nodiscard]] SshFailure DownloadByShell(SshLink& link, const std::string& remote_path,
                                         PartFile& file);

/// All ways in their order, see RemoteShell.
[[nodiscard]] TransferOutcome UploadFile(SshLink& link, const std::string& local_file,
                                         const std::string& remote_path, unsigned mode);
[[nodiscard]] TransferOutcome DownloadFile(SshLink& link, const std::string& remote_path,
                                           const std::string& local_path, std::uint64_t max_bytes);

/// A limit that is renewed with every step forward.
[[nodiscard]] StepLimit TransferLimit(const SshLink& link);

[[nodiscard]] SshFailure SizeDiffers(std::uint64_t expected, std::uint64_t actual);
[[nodiscard]] SshFailure NoSuchFile(const std::string& remote_path);
[[nodiscard]] SshFailure LocalReadFailure(const std::string& path);

}  // namespace Vantix::transport
