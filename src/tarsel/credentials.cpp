#include "tarsel/credentials.h"

#include <utility>

#include "tarsel/key_file.h"
#include "tarsel/target_text.h"
#include "tarsel/terminal.h"

namespace tarsel {
namespace {

PasswordResult Error(const std::string& sentence) {
    PasswordResult result;
    result.error = sentence;
    return result;
}

// `place` names the source, for example "The password file /x".
PasswordResult FromRead(ReadState state, std::string line, const std::string& place) {
    PasswordResult result;
    switch (state) {
        case ReadState::kOk:
            result.is_found = true;
            result.password = std::move(line);
            return result;
        case ReadState::kInterrupted:
            result.is_interrupted = true;
            result.error = "Interrupted while the password was read.";
            return result;
        case ReadState::kMissing:
            return Error(place + " cannot be opened; check the name.");
        case ReadState::kTooOpen:
            return Error(place + " can be accessed by other users; " + HowToCloseToOthers() +
                         " first.");
        case ReadState::kEmpty:
            return Error(place + " is empty; its first line must be the password.");
        case ReadState::kTooLong:
            return Error(place + " holds a line that is too long for a password.");
        case ReadState::kFailed:
            break;
    }
    return Error(place + " cannot be read; give the password another way.");
}

PasswordResult FromFile(const std::string& file) {
    std::string line;
    const ReadState state = ReadPrivateFileLine(file, line);
    return FromRead(state, std::move(line), "The password file " + file);
}

PasswordResult FromDescriptor(int descriptor) {
    std::string line;
    const ReadState state = ReadDescriptorLine(descriptor, line);
    const std::string place = "The password descriptor " + std::to_string(descriptor);
    if (state == ReadState::kMissing) return Error(place + " is not open; check its number.");
    return FromRead(state, std::move(line), place);
}

PasswordResult FromStandardInput() {
    if (IsStandardInputTerminal()) {
        return Error(
            "--password-stdin would show the password on this terminal; leave it out and "
            "the password is asked for without showing it.");
    }
    std::string line;
    const ReadState state = ReadDescriptorLine(StandardInputDescriptor(), line);
    return FromRead(state, std::move(line), "The standard input");
}

PasswordResult FromPrompt(const std::string& prompt, const std::function<bool()>& is_interrupted,
                          const std::string& how_else) {
    std::string line;
    const ReadState state = PromptWithoutEcho(prompt, is_interrupted, line);
    if (state == ReadState::kMissing) return Error(how_else);
    return FromRead(state, std::move(line), "The password prompt");
}

PasswordResult AskForPassword(const ScanArguments& arguments,
                              const std::function<bool()>& is_interrupted) {
    const std::string user = arguments.user.empty() ? "" : arguments.user + "@";
    const std::string target = user + PeerText(arguments);
    if (arguments.kind != TargetKind::kRemoteOs) {
        return FromPrompt("Password for " + target + ": ", is_interrupted,
                          "There is no password and no terminal to ask for it; use the environment "
                          "variable TARSEL_PASSWORD, --password-file, --password-fd or "
                          "--password-stdin.");
    }
    PasswordResult asked =
        FromPrompt("Password for " + target + " (empty: only keys): ", is_interrupted, "");
    if (!asked.is_found && asked.error.empty()) asked.is_found = true;  // no terminal: keys
    return asked;
}

bool NeedsNoPassword(const ScanArguments& arguments) {
    return IsOwnMachine(arguments.kind) && arguments.user.empty();
}

}  // namespace

PasswordResult FindPassword(const ScanArguments& arguments,
                            const std::function<bool()>& is_interrupted) {
    std::string from_environment;
    const bool is_in_environment = TakeEnvironmentVariable(kPasswordVariable, from_environment);
    if (NeedsNoPassword(arguments)) return FromRead(ReadState::kOk, "", "");
    const PasswordSource& source = arguments.password;
    if (!source.file.empty()) return FromFile(source.file);
    if (source.descriptor >= 0) return FromDescriptor(source.descriptor);
    if (source.is_stdin) return FromStandardInput();
    if (is_in_environment) return FromRead(ReadState::kOk, std::move(from_environment), "");
    if (!arguments.remote.key_file.empty()) return FromRead(ReadState::kOk, "", "");
    return AskForPassword(arguments, is_interrupted);
}

PasswordResult FindPassphrase(const ScanArguments& arguments,
                              const std::function<bool()>& is_interrupted) {
    std::string from_environment;
    const bool is_in_environment = TakeEnvironmentVariable(kPassphraseVariable, from_environment);
    const RemoteArguments& remote = arguments.remote;
    if (remote.key_file.empty()) return FromRead(ReadState::kOk, "", "");
    const PasswordSource& source = remote.passphrase;
    if (!source.file.empty()) return FromFile(source.file);
    if (source.descriptor >= 0) return FromDescriptor(source.descriptor);
    if (is_in_environment) return FromRead(ReadState::kOk, std::move(from_environment), "");
    if (!IsKeyFileEncrypted(remote.key_file)) return FromRead(ReadState::kOk, "", "");
    return FromPrompt("Passphrase for the key " + remote.key_file + ": ", is_interrupted,
                      "The key " + remote.key_file +
                          " is encrypted and there is no terminal to ask for its passphrase; use "
                          "the environment variable TARSEL_SSH_PASSPHRASE, --ssh-passphrase-file "
                          "or --ssh-passphrase-fd.");
}

}  // namespace tarsel
