// What went wrong with one run of arcconf.
//
// Pure: the outcome of the run in, one value out. Sentences for people are made elsewhere.
#pragma once

#include <string>

#include "transport/process/command_runner.h"

namespace Vantix::transport {

enum class ArcconfProblem {
    kNone,
    kNotInstalled,
    kNotStarted,  ///< the system refused to start it, or it broke down
    kTimedOut,
    kCancelled,
    kNoRights,      ///< it wants an administrator
    kNotItsWords,   ///< it said something that is not arcconf's
    kNoController,  ///< it works and finds no controller
    kRefused        ///< it knows the controller and did not answer the question
};

/// What it says is arcconf's own only with "Controllers found", which begins every answer.
[[nodiscard]] ArcconfProblem ClassifyArcconf(const CommandOutcome& outcome);

/// The first words of what it said about its failure, clean; empty when it said nothing.
[[nodiscard]] std::string ArcconfWords(const CommandOutcome& outcome);

}  // namespace Vantix::transport
