#include "transport/ipmi/ipmitool_command.h"

#include <string_view>
#include <utility>

#include "transport/ipmi/hex_text.h"

namespace Vantix::transport {
namespace {

// Its own waits: two seconds for an answer, two tries. Without these a silent BMC costs 20 seconds.
constexpr const char* kAnswerSeconds = "2";
constexpr const char* kTries = "2";

std::string Script(const std::vector<std::string>& lines) {
    std::string script;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        script += "echo " + AnswerMark(i) + "\n" + lines[i] + "\n";
    }
    return script + "echo " + AnswerMark(lines.size()) + "\n";
}

void AddLanArguments(const IpmiTarget& target, const IpmiTry& attempt, Command& command) {
    auto& words = command.arguments;
    words.insert(words.end(), {"-I", "lanplus", "-H", target.host, "-p",
                               std::to_string(target.port), "-U", target.user});
    // Without a password the tool asks for one, finds neither terminal nor input, and takes none.
    if (!target.password.empty()) {
        words.insert(words.end(), {"-f", PassedTextPath(command.passed_texts.size())});
        command.passed_texts.push_back(target.password);
    }
    words.insert(words.end(), {"-C", std::to_string(attempt.cipher)});
    if (!attempt.privilege.empty()) words.insert(words.end(), {"-L", attempt.privilege});
}

}  // namespace

bool IsUsableIpmiPassword(const std::string& password) {
    constexpr std::string_view kCutsAt("\t\r\n\0", 4);
    return password.size() <= kLongestIpmiPassword &&
           password.find_first_of(kCutsAt) == std::string::npos;
}

std::string RawLine(const RawRequest& request) {
    std::string line =
        "raw 0x" + HexByte(request.network_function) + " 0x" + HexByte(request.command);
    for (const std::uint8_t byte : request.data) line += " 0x" + HexByte(byte);
    return line;
}

std::string AnswerMark(std::size_t index) {
    return "@" + std::to_string(index);
}

Command IpmiToolCommand(const std::string& program, const IpmiTarget& target,
                        const IpmiTry& attempt, const std::vector<std::string>& lines) {
    Command command;
    command.program = program;
    command.arguments = {"-v"};
    if (target.host.empty()) {
        command.arguments.insert(command.arguments.end(), {"-I", "open"});
    } else {
        AddLanArguments(target, attempt, command);
    }
    command.arguments.insert(
        command.arguments.end(),
        {"-N", kAnswerSeconds, "-R", kTries, "exec", PassedTextPath(command.passed_texts.size())});
    command.passed_texts.push_back(Script(lines));
    return command;
}

}  // namespace Vantix::transport
