// Firmware of a chassis management module and of its I/O switches, over CIM.

#include <utility>

#include "common/result/result_codes.h"
#include "platform/cim/cim_channel.h"
#include "platform/cim/module_reader.h"
#include "platform/log/log.h"
#include "platform/system_info/system_info.h"

namespace {

using Vantix::cim::CimChannel;
using Vantix::cim::CimSource;
using Vantix::cim::ModuleComponents;

constexpr const char* kChassisComponentsLog = "chassis_components";

// 0, or the code of what kept the chassis from being read.
int ReadChassis(CimChannel& channel) {
    auto failure = channel.NeedSoftware();
    if (!failure) {
        failure = channel.Need({CimSource::kSystems, CimSource::kChassis, CimSource::kPackages,
                                CimSource::kSlots, CimSource::kPackagesInSlot,
                                CimSource::kSystemPackages});
    }
    if (channel.Run().IsCancelled()) return INTERRUPTED_BY_USER;
    for (const std::string& reason : channel.Skipped(CimSource::kSoftware)) {
        Vantix::Log(2, kChassisComponentsLog, __LINE__).Stream() << "Left out: " << reason;
    }
    const bool has_no_systems = failure.IsElsewhere() && !channel.Snapshot().software.empty();
    return failure && !has_no_systems ? channel.Remember(failure).code : SUCCEED;
}

void ReportComponents(CimChannel& channel, const char* source, const ModuleComponents& module) {
    Vantix::VantixConnection::SourceStatus status;
    const auto& skipped = channel.Skipped(CimSource::kSoftware);
    status.source = source;
    status.state = skipped.empty() ? Vantix::VantixConnection::SourceState::kComplete
                                   : Vantix::VantixConnection::SourceState::kPartial;
    status.items_read = static_cast<int>(module.components.size());
    status.items_failed = static_cast<int>(skipped.size());
    status.issues = skipped;
    channel.Run().ReportSource(std::move(status));
}

template <typename Info>
void Append(const ModuleComponents& module, std::vector<Info>& list) {
    for (const auto& component : module.components) {
        list.push_back({module.machine_type, module.serial_number, component.SoftwareID,
                        component.VersionString, component.Classifications, component.Description,
                        component.Name});
    }
}

}  // namespace

int SystemInfoScan::GetTolvSoftwareIdentity(const ConnectionInfo& connection,
                                            std::vector<TolvInfo>& list) {
    CimChannel* channel = CimChannel::Of(connection);
    if (channel == nullptr) return CONNECTION_FAILED;
    const int code = ReadChassis(*channel);
    if (code != SUCCEED) return code;
    const ModuleComponents module = Vantix::cim::ReadChassisModule(channel->Snapshot());
    ReportComponents(*channel, "chassis module firmware", module);
    Append(module, list);
    return SUCCEED;
}

int SystemInfoScan::GetSwitchSoftwareIdentity(const ConnectionInfo& connection,
                                              const std::string& bay,
                                              std::vector<SwitchInfo>& list) {
    CimChannel* channel = CimChannel::Of(connection);
    if (channel == nullptr) return CONNECTION_FAILED;
    const int code = ReadChassis(*channel);
    if (code != SUCCEED) return code;
    const auto module = Vantix::cim::ReadSwitch(channel->Snapshot(), bay);
    if (!module) {
        channel->Run().AddNotice("The chassis shows no I/O switch in bay " + bay +
                                 "; check the bay number.");
        return NO_APPLICABLE_HARDWARE;
    }
    ReportComponents(*channel, "switch firmware", *module);
    Append(*module, list);
    return SUCCEED;
}
