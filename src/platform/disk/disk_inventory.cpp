#include "platform/disk/disk_inventory.h"

#include <iterator>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/disk/disk_survey.h"
#include "platform/disk/nvme_admin.h"
#include "platform/disk/storage_requests.h"
#include "platform/disk/storage_survey.h"
#include "platform/local/local_host.h"
#include "platform/log/log.h"
#include "platform/raid/raid_unasked.h"

namespace Vantix::disk {
namespace {

using VantixConnection::ActiveRun;
using VantixConnection::RunContext;
using VantixOptions::SoftwareIdentity_;

constexpr const char* kDiskInventoryLog = "disk_inventory";
constexpr const char* kToldKey = "disks told by the disk inventory";

std::vector<SoftwareIdentity_> Survey(const transport::SystemRoot& root, RunContext& run) {
    if (!root.IsThisMachine()) return SurveyDisks(root, nullptr, run);
    const StorageRequests* storage = SystemStorage();
    return storage == nullptr ? SurveyDisks(root, &KernelNvmeAdmin(), run)
                              : SurveyStorage(*storage, root, run);
}

int Append(std::vector<SoftwareIdentity_>& list) {
    RunContext& run = *ActiveRun::Option().run;
    const auto root = local::HostRoot();
    std::vector<SoftwareIdentity_> disks = Survey(*root, run);
    Log(3, kDiskInventoryLog, __LINE__).Stream() << "disks of this machine: " << disks.size();
    list.insert(list.end(), std::make_move_iterator(disks.begin()),
                std::make_move_iterator(disks.end()));
    raid::ReportUnasked(*root, run);
    local::ReportDenied(*root);
    return run.IsCancelled() ? INTERRUPTED_BY_USER : SUCCEED;
}

}  // namespace

int AppendDisks(std::vector<SoftwareIdentity_>& list) {
    const int code = Append(list);
    // Without a run the record is the thread's and would outlive the call.
    const bool has_run = ActiveRun::HostRootSlot() != nullptr;
    if (has_run && code == SUCCEED) ActiveRun::Option().run->Remember(kToldKey, "yes");
    return code;
}

int AppendDisksNotTold(std::vector<SoftwareIdentity_>& list) {
    const bool has_run = ActiveRun::HostRootSlot() != nullptr;
    if (has_run && !ActiveRun::Option().run->Recall(kToldKey).empty()) return SUCCEED;
    return Append(list);
}

}  // namespace Vantix::disk
