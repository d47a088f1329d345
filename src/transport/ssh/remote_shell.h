// Commands and files on a remote machine: run, upload, download.
//
// One object, one connection, one thread. Every call ends within the limits of the target, whatever
// the server does. Knows nothing of scans, and what a command prints is handed on as it came.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "transport/ssh/ssh_problem.h"
#include "transport/ssh/ssh_target.h"

namespace Vantix::transport {

struct RemoteCommand {
    /// Text for the POSIX shell of the remote machine; other users there can read it, so secrets go
    /// into `input`. Paths in it pass through QuotePathForShell first.
    std::string command_line;
    std::string input;                               ///< its standard input, closed behind it
    std::chrono::milliseconds time_limit{0};         ///< 0: only the target's total limit
    std::size_t max_output_bytes = 4 * 1024 * 1024;  ///< of each stream; the rest is dropped
    /// Put before the command that ends the process group when it runs as another user, for example
    /// "sudo -n" or "sudo -S -p ''", with `end_input` on its standard input.
    std::string end_prefix;
    std::string end_input;
};

/// How a command ended. The streams hold what was read, also when `failure` is set.
struct RemoteOutcome {
    SshFailure failure;       ///< the channel's; a command that fails is none
    int exit_status = -1;     ///< -1: ended by a signal, or `failure`
    std::string exit_signal;  ///< without "SIG": "KILL" (RFC 4254, 6.10)
    std::string output;
    std::string error_output;
    bool is_output_cut = false;
    bool is_error_output_cut = false;
    /// Bytes that the account's start files printed before the command began; not in the streams.
    std::size_t noise_bytes = 0;
    [[nodiscard]] bool Succeeded() const { return !failure && exit_status == 0; }
};

enum class TransferWay { kNone, kSftp, kScp, kShell };

/// "SFTP", "SCP", "shell"; "none".
[[nodiscard]] const char* TransferWayText(TransferWay way);

struct TransferOutcome {
    SshFailure failure;
    TransferWay way = TransferWay::kNone;  ///< the one that worked
    std::uint64_t bytes = 0;
    std::vector<std::string> issues;  ///< why the earlier ways did not work, one sentence each
};

class RemoteShell {
  public:
    virtual ~RemoteShell() = default;

    /// Connects, checks the server's key, logs in. To be called once, before everything else.
    [[nodiscard]] virtual SshFailure Connect() = 0;

    /// Runs the command under a process group of its own. When it is cancelled or out of time, the
    /// group is ended over a second channel, first politely; a cut connection cannot do that. The
    /// streams are those of the command alone: no banner, no start file's words.
    [[nodiscard]] virtual RemoteOutcome Execute(const RemoteCommand& command) = 0;

    /// Stores a local file under the remote path with the permissions `mode` (for example 0700),
    /// replacing what is there, and compares the sizes. SFTP, then SCP, then the shell.
    [[nodiscard]] virtual TransferOutcome Upload(const std::string& local_file,
                                                 const std::string& remote_path, unsigned mode) = 0;

    /// Fetches a remote file of at most `max_bytes`; the local path appears only when it is
    /// complete. The caller chooses that path; nothing of the remote path goes into it.
    [[nodiscard]] virtual TransferOutcome Download(const std::string& remote_path,
                                                   const std::string& local_path,
                                                   std::uint64_t max_bytes) = 0;

    /// What the server shows at login, clean; empty when nothing. Never mixed into any output.
    [[nodiscard]] virtual std::string LoginBanner() const = 0;

    /// Sentences the user should see once: host key checks off, a new key stored.
    [[nodiscard]] virtual std::vector<std::string> Notices() const = 0;
};

/// A shell over libssh. Nothing is sent before Connect(). Reads no configuration file of the user;
/// known hosts and keys only as `target` says.
[[nodiscard]] std::unique_ptr<RemoteShell> MakeSshShell(SshTarget target);

/// One word for the POSIX shell that stands for exactly these bytes (without NUL).
[[nodiscard]] std::string QuoteForShell(const std::string& word);

/// The same for a path: one that begins with "-" cannot be taken for an option.
[[nodiscard]] std::string QuotePathForShell(const std::string& path);

}  // namespace Vantix::transport
