// The shell texts that run on the remote machine, and the reading of what they answer.
//
// Pure: text in, text out. Everything that is not ours passes through quoting. The scripts need a
// POSIX shell and mktemp; no answer can be forged into another line, because values with control
// characters are dropped.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vantix::remote {

/// What the first script finds out about the machine.
struct RemoteMachine {
    std::string system;        ///< "Linux"
    std::string machine;       ///< "x86_64"
    std::string user;          ///< name of the account; empty when it has none
    bool is_root = false;      ///< the account has user id 0
    std::string tool;          ///< full path of an installed tool, empty: none
    std::string tool_version;  ///< "0.1.0"
    std::string folder;        ///< the private folder, absolute; empty when none could be made
};

/// Tells what the machine is, and makes a folder that only the account may enter and where programs
/// may run: below TMPDIR or /tmp, else /var/tmp, else the account's home.
[[nodiscard]] std::string SetupScript();
[[nodiscard]] RemoteMachine ParseSetupAnswer(const std::string& output);

/// Where an uploaded package must lie in the private folder.
[[nodiscard]] std::string PackagePath(const std::string& folder);
/// Unpacks it, removes it, and tells the path and the version of the tool in it. The package's top
/// folder, where it has one, does not matter.
[[nodiscard]] std::string UnpackScript(const std::string& folder);

/// Tells which of `names` are regular files in the folder (no links, nothing else), one a line as
/// "file NAME" or "other NAME"; nothing for those that are not there.
[[nodiscard]] std::string ListFilesScript(const std::string& folder,
                                          const std::vector<std::string>& names);
struct RemoteFiles {
    std::vector<std::string> regular;
    std::vector<std::string> other;  ///< links, folders, pipes
};
[[nodiscard]] RemoteFiles ParseListAnswer(const std::string& output,
                                          const std::vector<std::string>& names);

/// Removes the folder. Refuses every folder that SetupScript did not name so.
[[nodiscard]] std::string RemoveFolderScript(const std::string& folder);

/// How the tool is started there.
struct ToolCall {
    std::string tool;             ///< full path; empty: there is none
    std::string sudo;             ///< what stands before it, quoted where needed; empty: nothing
    bool reads_password = false;  ///< `sudo` reads the password from its standard input
};

/// The script that runs `command`, or the default command where that is empty, in the folder.
/// "{folder}" in it stands for the quoted folder, "{tarsel}" for the call of the tool, both as
/// often as they occur. A password is the only line of the script's input; no process that the
/// command starts can read it but sudo.
[[nodiscard]] std::string RunScript(const std::string& command, const std::string& folder,
                                    const ToolCall& call);
/// The last line with anything in it, clean and cut: what a program says last is usually why it
/// gave up.
[[nodiscard]] std::string LastWords(std::string_view error_output);
/// True when the command, or the default one for an empty text, calls the tool by "{tarsel}".
[[nodiscard]] bool NeedsTool(const std::string& command);

}  // namespace Vantix::remote
