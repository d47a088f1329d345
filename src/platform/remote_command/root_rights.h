// How the tool comes to root's rights on the remote machine: by the account itself, by sudo without
// a password, by sudo with the login's password. Never by a terminal.
#pragma once

#include <string>

#include "platform/remote_command/remote_scripts.h"
#include "transport/ssh/remote_shell.h"

namespace Vantix::remote {

struct RootRights {
    transport::SshFailure failure;  ///< the channel's; the rest is then of no use
    ToolCall call;
    std::string input;       ///< what the run script reads; may hold the password
    std::string end_prefix;  ///< for RemoteCommand::end_prefix
    std::string end_input;
    std::string notice;  ///< one sentence when the tool must run without root's rights
};

/// Tries the ways in order, each once, with a harmless call of the tool. `password` empty: none.
[[nodiscard]] RootRights FindRootRights(transport::RemoteShell& shell, const RemoteMachine& machine,
                                        const std::string& password);

}  // namespace Vantix::remote
