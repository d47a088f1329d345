// The program arcconf of the machine that is read: where it is, and what it answered.
//
// A program that hung once is not asked again. Private to this family.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/connection/run_context.h"
#include "transport/arcconf/arcconf_problem.h"
#include "transport/process/command_runner.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::raid {

struct ArcconfAnswer {
    transport::ArcconfProblem problem = transport::ArcconfProblem::kNone;
    std::string output;
    std::string words;  ///< what it said of its failure, short; else empty
};

class ArcconfTool {
  public:
    /// All three must outlive the object.
    ArcconfTool(transport::CommandRunner& runner, const transport::SystemRoot& root,
                const VantixConnection::RunContext& run);

    /// The controllers, asked as old releases want it where the newer way is unknown.
    [[nodiscard]] ArcconfAnswer List();
    [[nodiscard]] ArcconfAnswer Adapter(int controller_id);
    [[nodiscard]] ArcconfAnswer Disks(int controller_id);
    /// The program's own release; empty when it does not tell.
    [[nodiscard]] std::string Release();

  private:
    [[nodiscard]] ArcconfAnswer Ask(transport::Command command);
    [[nodiscard]] transport::CommandOutcome Run(transport::Command command);
    [[nodiscard]] bool IsLost() const;

    transport::CommandRunner& runner_;
    const VantixConnection::RunContext& run_;
    std::vector<std::string> programs_;  ///< where it may be; the first that exists is it
    transport::ArcconfProblem last_problem_ = transport::ArcconfProblem::kNone;
};

}  // namespace Vantix::raid
