#include "platform/raid/raid_scan.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/local/local_host.h"
#include "platform/log/log.h"
#include "platform/raid/raid_disk.h"
#include "platform/raid/raid_unasked.h"
#include "transport/arcconf/arcconf_output.h"

namespace Vantix::raid {
namespace {

using ARCCONF::RaidController;
using transport::ArcconfProblem;

constexpr const char* kRaidScanLog = "raid_scan";

bool IsServed(const RaidAdapter& adapter) {
    return adapter.is_served;
}

}  // namespace

RaidScan::RaidScan(transport::CommandRunner& runner,
                   std::shared_ptr<const transport::SystemRoot> root,
                   std::shared_ptr<VantixConnection::RunContext> run)
    : root_(std::move(root)), run_(std::move(run)), tool_(runner, *root_, *run_) {}

int RaidScan::ListControllers(Controllers& controllers) {
    controllers.clear();
    gaps_.clear();
    NoteAsked(*run_);
    adapters_ = FindRaidAdapters(*root_);
    const auto& list = adapters_.list;
    auto problem = ArcconfProblem::kNone;
    if (!adapters_.is_bus_listed || std::any_of(list.begin(), list.end(), IsServed)) {
        problem = AskForControllers(controllers);
    }
    for (const RaidAdapter& adapter : list) {
        if (!adapter.is_served) AddGap(LabelOf(adapter), CauseOtherMaker(), adapter.hides_disks);
    }
    Report(gaps_);
    local::ReportDenied(*root_);
    return ResultCodeOf(problem);
}

ArcconfProblem RaidScan::AskForControllers(Controllers& controllers) {
    const ArcconfAnswer answer = tool_.List();
    if (answer.problem != ArcconfProblem::kNone) {
        AddToolGaps(answer.problem, answer.words);
        return answer.problem;
    }
    for (const auto& told : transport::ParseArcconfControllers(answer.output).controllers) {
        RaidController controller;
        controller.Id = told.id;
        AskForAdapter(controller);
        controllers.push_back(std::move(controller));
    }
    MatchAddresses(controllers);
    return ArcconfProblem::kNone;
}

void RaidScan::AskForAdapter(RaidController& controller) {
    const ArcconfAnswer answer = tool_.Adapter(controller.Id);
    const auto adapter = transport::ParseArcconfAdapter(answer.output);
    controller.PciAddress = adapter.pci_address;
    controller.FirmwareVersion = adapter.firmware_version;
    if (answer.problem == ArcconfProblem::kNone && !adapter.pci_address.empty()) return;
    Log(2, kRaidScanLog, __LINE__).Stream()
        << "arcconf does not tell address and firmware of controller " << controller.Id << ": "
        << answer.words;
}

// Old releases tell no addresses; with one controller on both sides there is no doubt.
void RaidScan::MatchAddresses(Controllers& controllers) {
    std::vector<RaidAdapter> unknown;
    std::copy_if(adapters_.list.begin(), adapters_.list.end(), std::back_inserter(unknown),
                 [&](const RaidAdapter& adapter) {
                     const auto is_it = [&](const RaidController& controller) {
                         return controller.PciAddress == adapter.address;
                     };
                     return adapter.is_served &&
                            std::none_of(controllers.begin(), controllers.end(), is_it);
                 });
    std::vector<RaidController*> homeless;
    for (RaidController& controller : controllers) {
        if (controller.PciAddress.empty()) homeless.push_back(&controller);
    }
    if (homeless.size() == 1 && unknown.size() == 1) {
        homeless.front()->PciAddress = unknown.front().address;
    }
    if (!homeless.empty()) return;
    for (const RaidAdapter& adapter : unknown) {
        AddGap(LabelOf(adapter), CauseNotListed(), adapter.hides_disks);
    }
}

int RaidScan::ReadDisks(RaidController& controller) {
    controller.Disks.clear();
    const ArcconfAnswer answer = tool_.Disks(controller.Id);
    const transport::ArcconfDisks told = transport::ParseArcconfDisks(answer.output);
    std::transform(told.disks.begin(), told.disks.end(), std::back_inserter(controller.Disks),
                   ToRaidDisk);
    disks_read_ += static_cast<int>(told.disks.size());
    if (told.has_section) ++controllers_read_;
    const std::size_t known_gaps = gaps_.size();
    const std::string place = controller.PciAddress.empty() ? "" : " at " + controller.PciAddress;
    const std::string label = "RAID controller " + std::to_string(controller.Id) + place;
    if (answer.problem != ArcconfProblem::kNone) {
        AddGap(label, CauseOf(answer.problem, answer.words, {}), true);
    } else if (!told.has_section || !told.is_whole) {
        AddGap(label, CauseCutOff(), true);
    } else {
        Log(4, kRaidScanLog, __LINE__).Stream() << label << ": " << told.disks.size() << " disks";
    }
    Report({gaps_.begin() + static_cast<std::ptrdiff_t>(known_gaps), gaps_.end()});
    const bool is_incomplete = !told.has_section || !told.is_whole;
    if (answer.problem == ArcconfProblem::kNone && is_incomplete) return GENERIC_FAILURE;
    return ResultCodeOf(answer.problem);
}

void RaidScan::AddToolGaps(ArcconfProblem problem, const std::string& words) {
    const bool is_strange =
        problem == ArcconfProblem::kNoController || problem == ArcconfProblem::kNotItsWords;
    const RaidCause cause = CauseOf(problem, words, is_strange ? tool_.Release() : std::string());
    const bool is_silent =
        problem == ArcconfProblem::kNotInstalled || problem == ArcconfProblem::kNoController;
    if (!adapters_.list.empty() || !is_silent) {
        Log(2, kRaidScanLog, __LINE__).Stream() << cause.text << ". " << cause.advice;
    }
    for (const RaidAdapter& adapter : adapters_.list) {
        if (adapter.is_served) AddGap(LabelOf(adapter), cause, adapter.hides_disks);
    }
}

void RaidScan::AddGap(const std::string& label, RaidCause cause, bool is_certain) {
    Log(3, kRaidScanLog, __LINE__).Stream() << "Disks not read: " << label << ": " << cause.text;
    gaps_.push_back({label, std::move(cause), is_certain});
}

// Nothing is told where there is no controller at all.
void RaidScan::Report(const std::vector<RaidGap>& new_gaps) {
    if (gaps_.empty() && controllers_read_ == 0) return;
    run_->ReportSource(StatusOf(gaps_, controllers_read_, disks_read_));
    for (const std::string& notice : NoticesOf(new_gaps)) run_->AddNotice(notice);
}

}  // namespace Vantix::raid
