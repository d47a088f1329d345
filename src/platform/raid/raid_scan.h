// One reading of the RAID controllers: what PCI shows, what the tool tells, and what is missing.
// Private to this family.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/connection/run_context.h"
#include "platform/raid/arcconf_tool.h"
#include "platform/raid/raid.h"
#include "platform/raid/raid_adapters.h"
#include "platform/raid/raid_gaps.h"
#include "transport/process/command_runner.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::raid {

class RaidScan {
  public:
    /// `runner` must outlive the object.
    RaidScan(transport::CommandRunner& runner, std::shared_ptr<const transport::SystemRoot> root,
             std::shared_ptr<VantixConnection::RunContext> run);

    /// Both as ArcconfConfig tells. The tool runs only where PCI shows a controller of its maker,
    /// or shows nothing at all.
    int ListControllers(std::vector<ARCCONF::RaidController>& controllers);
    int ReadDisks(ARCCONF::RaidController& controller);

  private:
    using Controllers = std::vector<ARCCONF::RaidController>;

    transport::ArcconfProblem AskForControllers(Controllers& controllers);
    void AskForAdapter(ARCCONF::RaidController& controller);
    void MatchAddresses(Controllers& controllers);
    void AddToolGaps(transport::ArcconfProblem problem, const std::string& words);
    void AddGap(const std::string& label, RaidCause cause, bool is_certain);
    void Report(const std::vector<RaidGap>& new_gaps);

    const std::shared_ptr<const transport::SystemRoot> root_;
    const std::shared_ptr<VantixConnection::RunContext> run_;
    ArcconfTool tool_;
    RaidAdapters adapters_;
    std::vector<RaidGap> gaps_;
    int controllers_read_ = 0;
    int disks_read_ = 0;
};

}  // namespace Vantix::raid
