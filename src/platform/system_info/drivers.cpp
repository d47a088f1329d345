// The drivers of the local host: what serves its devices, in which version.

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/local/local_host.h"
#include "platform/log/log.h"
#include "platform/system_info/driver_links.h"
#include "platform/system_info/driver_texts.h"
#include "platform/system_info/present_drivers.h"
#include "platform/system_info/system_info.h"
#include "transport/text/text_cleaning.h"

namespace {

using namespace Vantix::system_info;  // NOLINT: the family's own readers
using Vantix::DriverData;
using Vantix::transport::CleanText;
using Vantix::transport::ModuleName;
using Vantix::transport::ModuleNames;
using Vantix::transport::NaturalLess;
using Vantix::transport::SystemRoot;
using Vantix::VantixConnection::ActiveRun;
using Vantix::VantixConnection::SourceState;
using Vantix::VantixConnection::SourceStatus;

constexpr const char* kDriversLog = "drivers";

// One record for each kind of adapter, named as update packages name it ("fakenet_80861521"), and
// one of the bare name for what else the driver serves, or for one that serves nothing now.
void AppendRecords(const DriverData& driver, const DriverUse& use,
                   std::vector<DriverData>& records) {
    DriverData others = driver;
    others.DevicePresent = use.devices;
    for (const auto& [ids, count] : use.adapters) {
        DriverData adapter = driver;
        adapter.Identifier += "_" + ids;
        adapter.DevicePresent = count;
        others.DevicePresent -= count;
        records.push_back(std::move(adapter));
    }
    if (others.DevicePresent > 0 || use.adapters.empty()) records.push_back(std::move(others));
}

// Drivers in the kernel's own sources carry its version.
std::vector<DriverData> Records(const SystemRoot& root, const DriverLinks& links) {
    const std::string release = root.ReadText("/proc/sys/kernel/osrelease");
    ModuleNames names;
    for (const auto& [name, use] : links.drivers) names.insert(ModuleName(name));
    const auto descriptions = ReadModuleDescriptions(root, release, names);
    std::vector<DriverData> records;
    for (const auto& [name, use] : links.drivers) {
        const std::string folder = "/sys/module/" + use.module;
        const auto description = descriptions.find(ModuleName(name));
        DriverData record;
        record.Identifier = CleanText(name);
        std::string source_version;
        if (!use.module.empty()) {
            record.Version = root.ReadText(folder + "/version");
            source_version = root.ReadText(folder + "/srcversion");
        }
        if (record.Version.empty()) record.Version = release;
        record.Description = DriverDescription(
            description == descriptions.end() ? std::string() : description->second,
            source_version);
        AppendRecords(record, use, records);
    }
    return records;
}

struct Survey {
    const char* source;
    bool is_read = false;
    std::vector<DriverData> drivers;
    std::vector<DriverlessDevice> driverless;
};

Survey ReadFiles(const SystemRoot& root) {
    DriverLinks links = ReadDriverLinks(root);
    Survey survey{"/sys/bus", links.has_buses, {}, std::move(links.driverless)};
    if (survey.is_read) survey.drivers = Records(root, links);
    return survey;
}

// Where the system lists its devices by calls, there is always one.
Survey ReadSystem(const SystemRoot& root) {
    const auto devices = Vantix::local::HostDevices();
    if (!devices) return ReadFiles(root);
    PresentDrivers found = DriversOf(*devices);
    return {"SetupAPI", !devices->empty(), std::move(found.drivers), std::move(found.driverless)};
}

void Report(SourceState state, std::size_t count, std::string detail) {
    SourceStatus status;
    status.source = "drivers";
    status.state = state;
    status.items_read = static_cast<int>(count);
    status.detail = std::move(detail);
    ActiveRun::Option().run->ReportSource(std::move(status));
}

}  // namespace

int SystemInfoScan::GetDriverData(std::vector<DriverData>& drivers) {
    const auto root = Vantix::local::HostRoot();
    Survey survey = ReadSystem(*root);
    if (!survey.is_read) {
        Vantix::Log(1, kDriversLog, __LINE__).Stream() << survey.source << " cannot be read";
        Report(SourceState::kFailed, 0,
               std::string("This system shows no devices (") + survey.source + ").");
        Vantix::local::ReportDenied(*root);
        return READ_FILE_FAILED;
    }
    std::vector<DriverData>& records = survey.drivers;
    std::stable_sort(records.begin(), records.end(),
                     [](const DriverData& left, const DriverData& right) {
                         return NaturalLess(left.Identifier, right.Identifier);
                     });
    const std::vector<DriverData> missing = MissingDrivers(survey.driverless);
    Vantix::Log(3, kDriversLog, __LINE__).Stream()
        << records.size() << " drivers, " << missing.size() << " kinds of devices without driver";
    Report(SourceState::kComplete, records.size() + missing.size(), {});
    Vantix::local::ReportDenied(*root);
    std::move(records.begin(), records.end(), std::back_inserter(drivers));
    drivers.insert(drivers.end(), missing.begin(), missing.end());
    return SUCCEED;
}
