#include "platform/remote_command/ssh_errors.h"

#include "common/result/result_codes.h"

namespace Vantix::remote {

using transport::SshFailure;
using transport::SshProblem;

namespace {

struct Row {
    int code;
    const char* what;    // "<what> <target> (<the transport's words>); <advice>."
    const char* advice;  // what to do
};

Row RowOfFile(SshProblem problem, SshStep step) {
    const bool is_upload = step == SshStep::kUploading;
    const int code = is_upload ? UPLOAD_FAILED : DOWNLOAD_FAILED;
    switch (problem) {
        case SshProblem::kNoSuchFile:
            return {code, "A file is missing on", "look there for what became of it"};
        case SshProblem::kFileTooLarge:
            return {code, "A file is too large to be fetched from",
                    "look there for what filled it"};
        case SshProblem::kLocalFile:
            return {is_upload ? READ_FILE_FAILED : WRITE_FILE_FAILED,
                    is_upload ? "A local file cannot be read to be sent to"
                              : "A local file cannot be written that comes from",
                    "check the rights and the free space of its folder"};
        default:
            return {code,
                    is_upload ? "A file could not be sent to" : "A file could not be fetched from",
                    "check the free space there and that its SSH server allows files"};
    }
}

Row RowOfUse(SshProblem problem, SshStep step) {
    switch (problem) {
        case SshProblem::kNone:
            return {SUCCEED, "", ""};
        case SshProblem::kConnectionLost:
            return {CONNECTION_FAILED, "The SSH connection was cut to",
                    "check the network and that the server stays up, and try again"};
        case SshProblem::kCancelled:
            return {INTERRUPTED_BY_USER, "Interrupted while working over SSH on",
                    "start the scan again"};
        case SshProblem::kDeadline:
            return {TIMEOUT, "The time for the whole scan is used up on",
                    "allow more with --deadline"};
        case SshProblem::kCommandNotStarted:
            return {REMOTE_MACHINE_NOT_SUPPORTED, "No command can be run over SSH on",
                    "the account needs a login shell that runs commands"};
        default:
            return RowOfFile(problem, step);
    }
}

Row RowOfLogin(SshProblem problem, SshStep step) {
    switch (problem) {
        case SshProblem::kHostKeyUnknown:
            return {VERIFY_CERTIFICATE_FAILED, "The host key is not known of",
                    "check its fingerprint at the server and store it with "
                    "\"--host-key accept-new\""};
        case SshProblem::kHostKeyChanged:
            return {VERIFY_CERTIFICATE_FAILED, "The host key is not the known one of",
                    "if nobody installed the server anew, somebody may sit in between"};
        case SshProblem::kAuthRefused:
            return {
                AUTHENTICATION_FAILED, "The login over SSH was refused by",
                "check user name, password and key (--ssh-key and the password options give them); "
                "no further login is tried, so that the account is not locked"};
        case SshProblem::kNoUsableAuth:
            return {AUTHENTICATION_FAILED, "There is neither a key nor a password to log in to",
                    "give what the server asks for, with --ssh-key or one of the password options"};
        case SshProblem::kPasswordMustChange:
            return {PASSWORD_MUST_BE_CHANGED, "The password must be changed first on",
                    "log in there once and change it"};
        case SshProblem::kLocalFile:
            // Before the login the only file of ours is the key.
            if (step != SshStep::kTalking) return RowOfFile(problem, step);
            return {READ_FILE_FAILED, "The key file cannot be used to log in to",
                    "check its rights, that it is a private key, and its passphrase"};
        default:
            return RowOfUse(problem, step);
    }
}

Row RowOf(SshProblem problem, SshStep step) {
    switch (problem) {
        case SshProblem::kNotResolved:
            return {CONNECTION_FAILED, "The name could not be resolved of",
                    "check the spelling or use the IP address"};
        case SshProblem::kRefused:
            return {CONNECTION_FAILED, "Nobody answered over SSH at",
                    "check the address and that its SSH server runs"};
        case SshProblem::kTimedOut:
            return {TIMEOUT, "The answer over SSH took too long of",
                    "check the network to the server and try again"};
        case SshProblem::kNoCommonAlgorithm:
            return {REMOTE_MACHINE_NOT_SUPPORTED, "No common way to encrypt was found with",
                    "an old server may be reached with --ssh-legacy"};
        case SshProblem::kProtocol:
            return {CONNECTION_FAILED, "SSH is not spoken properly by", "check address and port"};
        default:
            return RowOfLogin(problem, step);
    }
}

}  // namespace

TarselResult ResultOfSshFailure(const SshFailure& failure, SshStep step,
                                const std::string& target) {
    const Row row = RowOf(failure.problem, step);
    if (row.code == SUCCEED) return TarselResult(SUCCEED, "");
    const std::string words = failure.text.empty() ? "" : " (" + failure.text + ")";
    return TarselResult(row.code,
                        std::string(row.what) + " " + target + words + "; " + row.advice + ".");
}

}  // namespace Vantix::remote
