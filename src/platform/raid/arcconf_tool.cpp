#include "platform/raid/arcconf_tool.h"

#include <array>
#include <string_view>
#include <utility>

#include "platform/log/log.h"
#include "platform/raid/arcconf_places.h"
#include "transport/arcconf/arcconf_command.h"
#include "transport/arcconf/arcconf_output.h"

namespace Vantix::raid {
namespace {

using transport::ArcconfProblem;
using transport::Command;
using transport::CommandEnd;
using transport::CommandOutcome;

constexpr const char* kArcconfToolLog = "arcconf_tool";
constexpr const char* kProgram = "arcconf";

// A recorded tree brings its own program, or has none: this machine's would tell of this machine.
std::vector<std::string> Programs(const transport::SystemRoot& root) {
    if (root.IsThisMachine()) return ArcconfPlaces();
    constexpr std::array<std::string_view, 7> kFolders = {
        "/usr/local/sbin", "/usr/local/bin", "/usr/sbin",   "/usr/bin",
        "/sbin",           "/bin",           "/usr/Arcconf"};
    std::vector<std::string> programs;
    for (const std::string_view folder : kFolders) {
        const std::string path = root.Resolve(std::string(folder) + "/" + kProgram);
        if (!path.empty()) programs.push_back(root.HostPath(path));
    }
    return programs;
}

std::string Spoken(const Command& command) {
    std::string text = kProgram;
    for (const std::string& argument : command.arguments) text += " " + argument;
    return text;
}

}  // namespace

ArcconfTool::ArcconfTool(transport::CommandRunner& runner, const transport::SystemRoot& root,
                         const VantixConnection::RunContext& run)
    : runner_(runner), run_(run), programs_(Programs(root)) {}

ArcconfAnswer ArcconfTool::List() {
    ArcconfAnswer answer = Ask(transport::ArcconfListCommand(kProgram));
    if (answer.problem != ArcconfProblem::kNotItsWords) return answer;
    ArcconfAnswer versions = Ask(transport::ArcconfVersionsCommand(kProgram));
    return versions.problem == ArcconfProblem::kNotItsWords ? answer : versions;
}

ArcconfAnswer ArcconfTool::Adapter(int controller_id) {
    return Ask(transport::ArcconfAdapterCommand(kProgram, controller_id));
}

ArcconfAnswer ArcconfTool::Disks(int controller_id) {
    return Ask(transport::ArcconfDisksCommand(kProgram, controller_id));
}

std::string ArcconfTool::Release() {
    if (IsLost()) return {};
    return transport::ParseArcconfRelease(Run(transport::ArcconfReleaseCommand(kProgram)).output);
}

bool ArcconfTool::IsLost() const {
    return last_problem_ == ArcconfProblem::kTimedOut ||
           last_problem_ == ArcconfProblem::kCancelled ||
           last_problem_ == ArcconfProblem::kNotInstalled;
}

ArcconfAnswer ArcconfTool::Ask(Command command) {
    ArcconfAnswer answer;
    answer.problem = last_problem_;
    if (IsLost()) return answer;
    CommandOutcome outcome = Run(std::move(command));
    answer.problem = last_problem_ = transport::ClassifyArcconf(outcome);
    if (answer.problem != ArcconfProblem::kNone) answer.words = transport::ArcconfWords(outcome);
    answer.output = std::move(outcome.output);
    return answer;
}

CommandOutcome ArcconfTool::Run(Command command) {
    const std::string spoken = Spoken(command);
    run_.Activity(spoken);
    command.is_cancelled = [this] { return run_.IsCancelled(); };
    CommandOutcome outcome;
    outcome.end = CommandEnd::kNotFound;
    while (!programs_.empty()) {
        command.program = programs_.front();
        outcome = runner_.Run(command);
        if (outcome.end != CommandEnd::kNotFound) break;
        programs_.erase(programs_.begin());
    }
    if (outcome.end != CommandEnd::kNotFound) {
        Log(4, kArcconfToolLog, __LINE__).Stream()
            << command.program << ": " << spoken << ": exit status " << outcome.exit_status << ", "
            << outcome.output.size() << " bytes";
    }
    return outcome;
}

}  // namespace Vantix::raid
