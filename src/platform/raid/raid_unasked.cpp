#include "platform/raid/raid_unasked.h"

#include <utility>

#include "platform/raid/raid_adapters.h"
#include "platform/raid/raid_gaps.h"

namespace Vantix::raid {
namespace {

using VantixConnection::RunContext;
using VantixConnection::SourceState;
using VantixConnection::SourceStatus;

constexpr const char* kAskedKey = "RAID controllers are asked";

}  // namespace

void NoteAsked(RunContext& run) {
    run.Remember(kAskedKey, "yes");
}

void ReportUnasked(const transport::SystemRoot& root, RunContext& run) {
    if (!run.Recall(kAskedKey).empty()) return;
    SourceStatus status;
    for (const RaidAdapter& adapter : FindRaidAdapters(root).list) {
        if (adapter.hides_disks) status.issues.push_back(LabelOf(adapter) + ": not asked");
    }
    if (status.issues.empty()) return;
    status.source = kRaidSource;
    status.state = SourceState::kNotTried;
    status.required = false;
    status.detail =
        "This kind of scan leaves the disks behind RAID controllers to the BMC; a scan of the "
        "machine without its BMC asks the controllers.";
    run.ReportSource(std::move(status));
}

}  // namespace Vantix::raid
