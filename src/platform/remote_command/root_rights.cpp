#include "platform/remote_command/root_rights.h"

#include <chrono>
#include <random>

#include "transport/text/text_cleaning.h"

namespace Vantix::remote {
namespace {

using transport::QuotePathForShell;
using transport::RemoteCommand;
using transport::RemoteOutcome;

constexpr std::chrono::seconds kProbeLimit{60};
constexpr int kTimedOut = 124;  // as of the program "timeout"
constexpr const char* kWithoutPassword = "sudo -n --";

// sudo asks by this text; nothing else can be taken for its question.
std::string PrivatePrompt() {
    std::random_device random;
    return "tarsel-" + std::to_string(random()) + "-" + std::to_string(random());
}

RemoteOutcome Probe(transport::RemoteShell& shell, const std::string& sudo, const std::string& tool,
                    const std::string& input) {
    RemoteCommand command;
    command.command_line = "LC_ALL=C " + sudo + " " + QuotePathForShell(tool) + " --version";
    command.input = input;
    command.time_limit = kProbeLimit;
    RemoteOutcome outcome = shell.Execute(command);
    // A sudo that waits for a second factor or a directory service costs its rights, not the scan.
    if (outcome.failure.problem == transport::SshProblem::kDeadline) {
        outcome.failure = {};
        outcome.exit_status = kTimedOut;
        outcome.error_output += "\nno answer within a minute\n";
    }
    return outcome;
}

std::string WithoutPrompt(std::string text, const std::string& prompt) {
    for (std::size_t at = text.find(prompt); at != std::string::npos; at = text.find(prompt)) {
        text.erase(at, prompt.size());
    }
    return text;
}

// A carried tool is gone after the run; what sudo is told to allow must be there for the next one.
std::string LastingTool(const RemoteMachine& machine) {
    const bool is_carried = machine.tool.starts_with(machine.folder + "/");
    return is_carried ? "/usr/local/bin/tarsel" : machine.tool;
}

std::string Notice(const RemoteMachine& machine, const std::string& words) {
    const std::string said = LastWords(words);
    const std::string account = machine.user.empty() ? "ACCOUNT" : machine.user;
    return "The scan runs without root's rights there, so some facts are missing" +
           (said.empty() ? std::string() : " (sudo says: " + said + ")") +
           "; install the tool there and add the sudoers line \"" + account +
           " ALL=(root) NOPASSWD: " + transport::CleanText(LastingTool(machine)) +
           "\", or log in as root.";
}

// -k: cached rights would leave the password unread.
bool TryPassword(transport::RemoteShell& shell, const RemoteMachine& machine,
                 const std::string& password, RootRights& rights, std::string& words) {
    const std::string prompt = PrivatePrompt();
    const std::string sudo = "sudo -k -S -p " + prompt + " --";
    const std::string line = password + "\n";
    const RemoteOutcome outcome = Probe(shell, sudo, machine.tool, line);
    rights.failure = outcome.failure;
    words = WithoutPrompt(outcome.error_output, prompt);
    if (!outcome.Succeeded()) return false;
    rights.call = {machine.tool, sudo, true};
    rights.input = line;
    rights.end_prefix = "sudo -k -S -p '' --";
    rights.end_input = line;
    return true;
}

}  // namespace

RootRights FindRootRights(transport::RemoteShell& shell, const RemoteMachine& machine,
                          const std::string& password) {
    RootRights rights;
    rights.call.tool = machine.tool;
    if (machine.is_root || machine.tool.empty()) return rights;
    const RemoteOutcome outcome = Probe(shell, kWithoutPassword, machine.tool, "");
    rights.failure = outcome.failure;
    if (rights.failure) return rights;
    if (outcome.Succeeded()) {
        rights.call.sudo = kWithoutPassword;
        rights.end_prefix = kWithoutPassword;
        return rights;
    }
    std::string words = outcome.error_output;
    const bool may_ask_again = outcome.exit_status != kTimedOut && !password.empty();
    if (may_ask_again && TryPassword(shell, machine, password, rights, words)) return rights;
    if (!rights.failure) rights.notice = Notice(machine, words);
    return rights;
}

}  // namespace Vantix::remote
