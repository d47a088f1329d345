#include "transport/arcconf/arcconf_problem.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "transport/arcconf/arcconf_lines.h"
#include "transport/arcconf/arcconf_output.h"
#include "transport/text/ascii_case.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kWordsLookedAt = 4096;

bool AsksForRights(const CommandOutcome& outcome) {
    constexpr std::array<std::string_view, 7> kWords = {
        "root",       "privilege",     "permission",   "administrator",
        "super user", "not permitted", "access denied"};
    const std::string said = AsciiLowerText(outcome.error_output.substr(0, kWordsLookedAt) + "\n" +
                                            outcome.output.substr(0, kWordsLookedAt));
    return std::any_of(kWords.begin(), kWords.end(),
                       [&](std::string_view word) { return said.find(word) != std::string::npos; });
}

ArcconfProblem ClassifyAnswer(const CommandOutcome& outcome) {
    const ArcconfControllers answer = ParseArcconfControllers(outcome.output);
    if (answer.found.value_or(0) == 0) {
        if (AsksForRights(outcome)) return ArcconfProblem::kNoRights;
        return answer.found ? ArcconfProblem::kNoController : ArcconfProblem::kNotItsWords;
    }
    return outcome.exit_status <= 0 ? ArcconfProblem::kNone : ArcconfProblem::kRefused;
}

}  // namespace

ArcconfProblem ClassifyArcconf(const CommandOutcome& outcome) {
    switch (outcome.end) {
        case CommandEnd::kExited:
            return ClassifyAnswer(outcome);
        case CommandEnd::kNotFound:
            return ArcconfProblem::kNotInstalled;
        case CommandEnd::kTimedOut:
            return ArcconfProblem::kTimedOut;
        case CommandEnd::kCancelled:
            return ArcconfProblem::kCancelled;
        case CommandEnd::kSignalled:
        case CommandEnd::kNotStarted:
            break;
    }
    return ArcconfProblem::kNotStarted;
}

std::string ArcconfWords(const CommandOutcome& outcome) {
    constexpr std::array<std::string CommandOutcome::*, 3> kStreams = {
        &CommandOutcome::text, &CommandOutcome::error_output, &CommandOutcome::output};
    for (const auto stream : kStreams) {
        const std::string words = CleanStart((outcome.*stream).substr(0, kWordsLookedAt));
        if (!words.empty()) return words;
    }
    return {};
}

}  // namespace Vantix::transport
