#include "transport/arcconf/arcconf_command.h"

#include <utility>

namespace Vantix::transport {
namespace {

constexpr std::chrono::seconds kTimeLimit{60};

Command Call(const std::string& program, std::vector<std::string> arguments) {
    Command command;
    command.program = program;
    command.arguments = std::move(arguments);
    command.time_limit = kTimeLimit;
    return command;
}

}  // namespace

Command ArcconfListCommand(const std::string& program) {
    return Call(program, {"list"});
}

Command ArcconfVersionsCommand(const std::string& program) {
    return Call(program, {"getversion"});
}

Command ArcconfReleaseCommand(const std::string& program) {
    return Call(program, {});
}

Command ArcconfAdapterCommand(const std::string& program, int controller_id) {
    return Call(program, {"getconfig", std::to_string(controller_id), "AD"});
}

Command ArcconfDisksCommand(const std::string& program, int controller_id) {
    return Call(program, {"getconfig", std::to_string(controller_id), "PD"});
}

}  // namespace Vantix::transport
