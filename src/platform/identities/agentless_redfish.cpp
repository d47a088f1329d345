// Firmware identities over Redfish.

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/connection/redfish_errors.h"
#include "platform/identities/agentless_forms.h"
#include "platform/log/log.h"
#include "platform/redfish/device_list_reader.h"
#include "platform/redfish/inventory_reader.h"
#include "platform/redfish/redfish_channel.h"

namespace Vantix::Agentless {

using redfish::Inventory;
using redfish::ReadIssue;
using redfish::RedfishChannel;
using VantixConnection::SourceState;
using VantixConnection::SourceStatus;
using VantixOptions::SoftwareIdentity_;

namespace {

constexpr const char* kAgentlessRedfishLog = "agentless_redfish";

void LogIssues(const char* what, const std::vector<ReadIssue>& issues, int level) {
    for (const ReadIssue& issue : issues) {
        Log(level, kAgentlessRedfishLog, __LINE__).Stream()
            << what << issue.path << ": " << issue.cause;
    }
}

// Members that were read but made no record are as missing as those that could not be read.
void ReportUnusable(RedfishChannel& channel, const Inventory& inventory) {
    if (inventory.issues.empty()) return;
    for (SourceStatus status : channel.Run().Sources()) {
        if (status.source != redfish::kFirmwareSource) continue;
        status.state = SourceState::kPartial;
        status.items_failed += static_cast<int>(inventory.issues.size());
        for (const ReadIssue& issue : inventory.issues) {
            status.issues.push_back(issue.path + ": " + issue.cause);
        }
        channel.Run().ReportSource(std::move(status));
    }
}

void ReportCompletion(RedfishChannel& channel, const Inventory& inventory) {
    if (inventory.completed == 0) return;
    SourceStatus status;
    status.source = "devices beside the inventory";
    status.state = SourceState::kComplete;
    status.required = false;
    status.items_read = static_cast<int>(inventory.completed);
    status.detail = "components that the firmware inventory does not list";
    channel.Run().ReportSource(std::move(status));
}

void ReportVersions(RedfishChannel& channel, const Inventory& inventory) {
    if (inventory.without_version == 0) return;
    channel.Run().AddNotice(std::to_string(inventory.without_version) +
                            " component(s) of the firmware inventory report no version.");
}

int RememberLostLogin(RedfishChannel& channel) {
    transport::RedfishFailure lost;
    lost.problem = transport::RedfishProblem::kUnauthorized;
    lost.status = 401;
    lost.text = "the session ended during the scan and another login did not help";
    return channel.Remember(lost).code;
}

}  // namespace

int IdentitiesOverRedfish(RedfishChannel& channel, std::vector<SoftwareIdentity_>& list, bool all) {
    Inventory inventory = channel.ReadInventory();
    LogIssues("Left out ", inventory.issues, 2);
    LogIssues("Not installed: ", inventory.not_installed, 4);
    ReportUnusable(channel, inventory);
    ReportCompletion(channel, inventory);
    ReportVersions(channel, inventory);
    std::copy_if(std::make_move_iterator(inventory.identities.begin()),
                 std::make_move_iterator(inventory.identities.end()), std::back_inserter(list),
                 [&](const SoftwareIdentity_& identity) {
                     return all || identity.IsPLDMUpdateSupported != "0";
                 });
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    if (channel.IsLoginLost()) return RememberLostLogin(channel);
    const auto& failure = channel.InventoryFailure();
    // A service without inventory misses nothing that its other resources told.
    const bool is_offered = failure.problem != transport::RedfishProblem::kNotFound;
    if (failure && (is_offered || list.empty())) {
        channel.Remember(failure);
        return VantixConnection::CodeOfReadFailure(failure);
    }
    return channel.IsInventoryPartial() || !inventory.issues.empty() ? GET_RESTFUL_DATA_FAILED
                                                                     : SUCCEED;
}

std::string DevicesOverRedfish(RedfishChannel& channel) {
    return redfish::ReadDeviceList(channel.Inventory());
}

}  // namespace Vantix::Agentless
