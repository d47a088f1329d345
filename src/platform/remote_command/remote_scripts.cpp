#include "platform/remote_command/remote_scripts.h"

#include <algorithm>
#include <string_view>

#include "transport/ssh/remote_shell.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::remote {
namespace {

using transport::QuoteForShell;
using transport::QuotePathForShell;

constexpr std::string_view kFolderMark = "{folder}";
constexpr std::string_view kToolMark = "{tarsel}";
constexpr const char* kDefaultCommand = "{tarsel} scan --local --quiet --output {folder}";
constexpr const char* kPathLine =
    "PATH=$PATH:/usr/local/bin:/usr/local/sbin:/usr/bin:/bin:/usr/sbin:/sbin; export PATH\n";
constexpr std::string_view kFolderPrefix = "/tarsel.";
constexpr std::string_view kVersionPrefix = "tarsel ";
constexpr std::size_t kLongestLine = 4200;  // a path and its word

bool HasControlCharacters(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char letter) {
        return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F;
    });
}

// The folder is removed later with everything in it; a machine that answers "/" must not decide.
bool IsOurFolder(std::string_view folder) {
    const std::size_t last = folder.rfind('/');
    const bool is_absolute = !folder.empty() && folder.front() == '/';
    return is_absolute && !HasControlCharacters(folder) &&
           folder.substr(last).starts_with(kFolderPrefix) &&
           folder.size() > last + kFolderPrefix.size();
}

// Calls `take` with the parts of each line "WORD VALUE".
template <typename Take>
void ForEachLine(std::string_view output, Take take) {
    while (!output.empty()) {
        const std::size_t end = std::min(output.find('\n'), output.size());
        const std::string_view line = output.substr(0, end);
        output.remove_prefix(std::min(end + 1, output.size()));
        const std::size_t blank = line.find(' ');
        const bool is_ours = line.size() <= kLongestLine && blank != std::string_view::npos;
        if (!is_ours || HasControlCharacters(line)) continue;
        take(line.substr(0, blank), std::string(line.substr(blank + 1)));
    }
}

std::string VersionIn(const std::string& text) {
    return text.starts_with(kVersionPrefix) ? text.substr(kVersionPrefix.size()) : std::string();
}

void TakeLine(std::string_view word, const std::string& value, RemoteMachine& machine) {
    if (word == "system") machine.system = transport::CleanStart(value);
    if (word == "machine") machine.machine = transport::CleanStart(value);
    if (word == "user") machine.is_root = value == "0";
    if (word == "name") machine.user = transport::CleanStart(value);
    if (word == "tool" && value.starts_with('/')) machine.tool = value;
    if (word == "version") machine.tool_version = VersionIn(transport::CleanStart(value));
    if (word == "folder" && IsOurFolder(value)) machine.folder = value;
}

// One pass: what was put in is not looked at again.
std::string Expanded(std::string_view command, const std::string& folder,
                     const std::string& tool_call) {
    std::string expanded;
    while (!command.empty()) {
        if (command.starts_with(kToolMark)) {
            expanded += tool_call;
            command.remove_prefix(kToolMark.size());
        } else if (command.starts_with(kFolderMark)) {
            expanded += folder;
            command.remove_prefix(kFolderMark.size());
        } else {
            expanded += command.front();
            command.remove_prefix(1);
        }
    }
    return expanded;
}

std::string CommandOrDefault(const std::string& command) {
    return command.find_first_not_of(" \t\r\n") == std::string::npos ? kDefaultCommand : command;
}

}  // namespace

std::string SetupScript() {
    return std::string("LC_ALL=C; export LC_ALL\n") + kPathLine +
           "printf 'system %s\\n' \"$(uname -s)\"\n"
           "printf 'machine %s\\n' \"$(uname -m)\"\n"
           "printf 'user %s\\n' \"$(id -u)\"\n"
           "printf 'name %s\\n' \"$(id -un 2>/dev/null)\"\n"
           "tool=$(command -v tarsel) && printf 'tool %s\\n' \"$tool\" &&\n"
           "  printf 'version %s\\n' \"$(\"$tool\" --version </dev/null 2>/dev/null)\"\n"
           "umask 077; folder=\n"
           "trap '[ -z \"$folder\" ] || rm -rf \"$folder\"; exit 1' HUP INT PIPE TERM\n"
           "for base in \"${TMPDIR:-/tmp}\" /var/tmp \"$HOME\"; do\n"
           "  case $base in /*) ;; *) continue ;; esac\n"
           "  folder=$(mktemp -d \"$base/tarsel.XXXXXXXXXX\" 2>/dev/null) || continue\n"
           "  printf '#!/bin/sh\\nexit 0\\n' >\"$folder/probe\" && chmod 700 \"$folder/probe\" &&\n"
           "    \"$folder/probe\" 2>/dev/null && rm -f \"$folder/probe\" &&\n"
           "    printf 'folder %s\\n' \"$folder\" && exit 0\n"
           "  rm -rf \"$folder\"\n"
           "done\n"
           "exit 1\n";
}

RemoteMachine ParseSetupAnswer(const std::string& output) {
    RemoteMachine machine;
    ForEachLine(output, [&machine](std::string_view word, const std::string& value) {
        TakeLine(word, value, machine);
    });
    return machine;
}

std::string PackagePath(const std::string& folder) {
    return folder + "/package.tar.gz";
}

std::string UnpackScript(const std::string& folder) {
    const std::string tool_folder = QuotePathForShell(folder + "/tool");
    const std::string package = QuotePathForShell(PackagePath(folder));
    return "umask 077\n"
           "mkdir " +
           tool_folder + " && tar -xzf " + package + " -C " + tool_folder +
           " --no-same-owner || exit 1\n"
           "rm -f " +
           package +
           "\n"
           "for tool in " +
           tool_folder + "/bin/tarsel " + tool_folder +
           "/*/bin/tarsel; do\n"
           "  [ -f \"$tool\" ] || continue\n"
           "  version=$(\"$tool\" --version </dev/null) || exit 2\n"
           "  printf 'tool %s\\nversion %s\\n' \"$tool\" \"$version\"\n"
           "  exit 0\n"
           "done\n"
           "exit 3\n";
}

std::string ListFilesScript(const std::string& folder, const std::vector<std::string>& names) {
    std::string script = "cd " + QuotePathForShell(folder) + " || exit 1\nfor name in";
    for (const std::string& name : names) script += " " + QuotePathForShell(name);
    return script +
           "; do\n"
           "  if [ -L \"$name\" ]; then printf 'other %s\\n' \"$name\"\n"
           "  elif [ -f \"$name\" ]; then printf 'file %s\\n' \"$name\"\n"
           "  elif [ -e \"$name\" ]; then printf 'other %s\\n' \"$name\"\n"
           "  fi\n"
           "done\n";
}

RemoteFiles ParseListAnswer(const std::string& output, const std::vector<std::string>& names) {
    RemoteFiles files;
    ForEachLine(output, [&](std::string_view word, const std::string& value) {
        if (std::find(names.begin(), names.end(), value) == names.end()) return;
        if (word == "file") files.regular.push_back(value);
        if (word == "other") files.other.push_back(value);
    });
    return files;
}

std::string RemoveFolderScript(const std::string& folder) {
    return IsOurFolder(folder) ? "rm -rf " + QuotePathForShell(folder) : "exit 1";
}

std::string RunScript(const std::string& command, const std::string& folder, const ToolCall& call) {
    const std::string quoted_folder = QuotePathForShell(folder);
    std::string script = kPathLine + ("cd " + quoted_folder + " || exit 1\n");
    std::string tool_call = QuotePathForShell(call.tool);
    if (!call.sudo.empty()) {
        tool_call = call.sudo + " " + tool_call;
        // Root's files must be readable for the account: the folder keeps everybody else out.
        script += "umask 077; : >tarsel.log; umask 022\n";
    }
    if (call.reads_password) {
        // A function: "env {tarsel}" then finds no program instead of showing the password to all.
        script +=
            "IFS= read -r tarsel_input\ntarsel_as_root() { printf '%s\\n' \"$tarsel_input\" | " +
            tool_call + " \"$@\"; }\n";
        tool_call = "tarsel_as_root";
    }
    return script + "exec </dev/null\n" +
           Expanded(CommandOrDefault(command), quoted_folder, tool_call) + "\n";
}

std::string LastWords(std::string_view error_output) {
    constexpr std::size_t kShown = 200;
    const std::size_t end = error_output.find_last_not_of(" \t\r\n");
    if (end == std::string_view::npos) return {};
    const std::size_t start = error_output.find_last_of('\n', end);
    const std::size_t from = start == std::string_view::npos ? 0 : start + 1;
    return transport::CleanStart(error_output.substr(from, end + 1 - from), kShown);
}

bool NeedsTool(const std::string& command) {
    return CommandOrDefault(command).find(kToolMark) != std::string::npos;
}

}  // namespace Vantix::remote
