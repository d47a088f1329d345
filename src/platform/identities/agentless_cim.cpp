// Firmware identities over CIM.

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/cim/cim_channel.h"
#include "platform/cim/software_reader.h"
#include "platform/identities/agentless_forms.h"
#include "platform/log/log.h"
#include "platform/redfish/firmware_survey.h"

namespace Vantix::Agentless {

using cim::CimChannel;
using cim::CimInventory;
using cim::CimSource;
using transport::CimFailure;
using transport::CimProblem;
using transport::HttpErrorKind;
using VantixConnection::SourceState;
using VantixConnection::SourceStatus;
using VantixOptions::SoftwareIdentity_;

namespace {

constexpr const char* kAgentlessCimLog = "agentless_cim";

SourceState StateOf(const CimFailure& failure, const CimInventory& inventory, bool has_skipped) {
    if (!failure) return has_skipped ? SourceState::kPartial : SourceState::kComplete;
    if (!inventory.identities.empty()) return SourceState::kPartial;
    if (failure.problem == CimProblem::kForbidden) return SourceState::kDenied;
    const bool is_late = failure.transport == HttpErrorKind::kTimeout ||
                         failure.transport == HttpErrorKind::kDeadline;
    if (is_late) return SourceState::kTimeout;
    return failure.IsElsewhere() ? SourceState::kUnsupported : SourceState::kFailed;
}

void Report(CimChannel& channel, const CimFailure& failure, const CimInventory& inventory) {
    const auto& skipped = channel.Skipped(CimSource::kSoftware);
    SourceStatus status;
    // The same source as over Redfish: the last way to it that was tried counts.
    status.source = redfish::kFirmwareSource;
    status.state = StateOf(failure, inventory, !skipped.empty());
    status.items_read = static_cast<int>(inventory.identities.size());
    status.items_failed = static_cast<int>(skipped.size());
    status.detail = failure ? failure.text : "read over CIM";
    status.issues = skipped;
    channel.Run().ReportSource(std::move(status));
    if (inventory.without_version == 0) return;
    channel.Run().AddNotice(std::to_string(inventory.without_version) +
                            " component(s) of the firmware inventory report no version.");
}

void LogLeftOut(CimChannel& channel, const CimInventory& inventory) {
    for (const std::string& reason : channel.Skipped(CimSource::kSoftware)) {
        Log(2, kAgentlessCimLog, __LINE__).Stream() << "Left out " << reason;
    }
    for (const std::string& reason : inventory.not_installed) {
        Log(4, kAgentlessCimLog, __LINE__).Stream() << "Not installed: " << reason;
    }
}

}  // namespace

int IdentitiesOverCim(CimChannel& channel, std::vector<SoftwareIdentity_>& list, bool all) {
    const CimFailure failure = channel.NeedSoftware();
    CimInventory inventory = cim::ReadSoftware(channel.Snapshot());
    LogLeftOut(channel, inventory);
    Report(channel, failure, inventory);
    std::copy_if(std::make_move_iterator(inventory.identities.begin()),
                 std::make_move_iterator(inventory.identities.end()), std::back_inserter(list),
                 [all](const SoftwareIdentity_& identity) {
                     return all || identity.IsPLDMUpdateSupported != "0";
                 });
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    // An instance that was left out is told, but fails nobody's scan.
    return failure ? channel.Remember(failure).code : SUCCEED;
}

}  // namespace Vantix::Agentless
