// Logs in to an SSH server as a user of this machine would who names host and port only, and says
// what came of it. A program of its own, because libssh asks the system for the home folder.
#include <cstdlib>
#include <iostream>
#include <string>

#include "transport/ssh/remote_shell.h"

using namespace Vantix::transport;

int main(int count, char** arguments) {
    if (count != 4) return 2;
    SshTarget target;
    target.host = arguments[1];
    target.port = static_cast<int>(std::strtol(arguments[2], nullptr, 10));
    target.user = "tester";
    const std::string rule = arguments[3];
    if (rule == "accept-new") target.host_key = SshHostKeyRule::kAcceptNew;
    if (rule == "off") target.host_key = SshHostKeyRule::kOff;
    std::getline(std::cin, target.password);
    auto shell = MakeSshShell(target);
    const SshFailure failure = shell->Connect();
    std::cout << (failure ? failure.text : "logged in") << '\n';
    for (const auto& notice : shell->Notices()) std::cout << notice << '\n';
    return failure ? 1 : 0;
}
