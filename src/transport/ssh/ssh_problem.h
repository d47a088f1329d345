// What can go wrong between here and a command or file on an SSH server.
//
// Three things stay apart: the server could not be talked to, it refused, it answered with nothing
// useful. Knows nothing of result codes. How a command itself ended is not a problem of the channel
// and stands in RemoteOutcome.
#pragma once

#include <string>

namespace Vantix::transport {

enum class SshProblem {
    kNone,
    kNotResolved,         ///< the host name is not known
    kRefused,             ///< nobody listens, or no way leads there
    kTimedOut,            ///< the server did not answer within the limit of that step
    kHostKeyUnknown,      ///< nothing is known of this server: no login was tried
    kHostKeyChanged,      ///< another key than the known one: no login was tried
    kNoCommonAlgorithm,   ///< the text holds both offers
    kProtocol,            ///< what answers speaks no SSH, or breaks its rules
    kAuthRefused,         ///< user name, password or key refused, or the login budget is spent
    kNoUsableAuth,        ///< the server wants a method for which there is no key or password
    kPasswordMustChange,  ///< the account needs a new password first
    kConnectionLost,      ///< cut while in use
    kCancelled,           ///< the caller asked to stop
    kDeadline,            ///< the total time of the target, or that of the command, is used up
    kCommandNotStarted,   ///< the server opens no channel or starts no commands
    kNoSuchFile,          ///< the file to fetch is not there
    kFileTransfer,        ///< no way to transfer the file worked, or its size came out wrong
    kFileTooLarge,        ///< the remote file is beyond the limit
    kLocalFile            ///< the local file cannot be read or written
};

/// What happened, in one clean sentence without a full stop; never a secret in it.
struct SshFailure {
    SshProblem problem = SshProblem::kNone;
    std::string text;
    explicit operator bool() const { return problem != SshProblem::kNone; }
};

/// A transfer that did not go as its protocol wants it.
[[nodiscard]] inline SshFailure BrokenTransfer(const std::string& why) {
    return {SshProblem::kFileTransfer, why};
}

}  // namespace Vantix::transport
