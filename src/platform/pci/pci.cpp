#include "platform/pci/pci.h"

#include <exception>
#include <utility>

#include "platform/connection/connection.h"
#include "platform/local/local_host.h"
#include "platform/log/log.h"
#include "platform/pci/net_firmware.h"
#include "platform/pci/pci_address.h"
#include "platform/pci/pci_inventory.h"
#include "platform/pci/pci_slots.h"
#include "platform/pci/present_pci_devices.h"
#include "platform/pci/vpd_file.h"

namespace {

using Vantix::Log;
using Vantix::pci::PciAddress;
using Vantix::pci::PciHost;
using Vantix::pci::PciSurvey;
using Vantix::VantixConnection::ActiveRun;
using Vantix::VantixConnection::SourceState;
using Vantix::VantixConnection::SourceStatus;

constexpr const char* kPciLog = "platform/pci";
constexpr const char* kSlowSource = "product data of PCI devices";

void ReportSlow(std::vector<std::string> issues) {
    if (issues.empty()) return;
    SourceStatus status;
    status.source = kSlowSource;
    status.state = SourceState::kTimeout;
    status.required = false;
    status.items_failed = static_cast<int>(issues.size());
    status.issues = std::move(issues);
    status.detail = "These devices may have a firmware version that is not shown.";
    ActiveRun::Option().run->ReportSource(std::move(status));
}

std::vector<PciInfo> ReadHost(const std::optional<PciAddress>& only) {
    const auto root = Vantix::local::HostRoot();
    if (const auto devices = Vantix::local::HostDevices()) {
        return PciRecordsOf(*devices, Vantix::pci::PciSlots(*root), only);
    }
    PciHost host{*root, {}, Vantix::pci::OpenVpdFile, {}};
    if (root->IsThisMachine()) host.net_firmware = Vantix::pci::ThisMachinesNetFirmware();
    const auto run = ActiveRun::Option().run;
    host.vpd_limits.is_cancelled = [run] { return run->IsCancelled(); };
    PciSurvey survey = Vantix::pci::ReadPciDevices(host, only);
    ReportSlow(std::move(survey.issues));
    Vantix::local::ReportDenied(*root);
    return std::move(survey.devices);
}

}  // namespace

int GetPciInfo(std::vector<PciInfo>& devices) try {
    devices = ReadHost(std::nullopt);
    Log(3, kPciLog, __LINE__).Stream() << "PCI devices: " << devices.size();
    return devices.empty() ? -1 : 0;
} catch (const std::exception& error) {
    Log(1, kPciLog, __LINE__).Stream() << "PCI devices could not be read: " << error.what();
    devices.clear();
    return -1;
}

int GetPciInfoByAddress(const std::string& pci_address, PciInfo& device) try {
    const auto address = Vantix::pci::ParsePciAddress(pci_address);
    std::vector<PciInfo> found;
    if (address) found = ReadHost(address);
    if (found.empty()) return -1;
    device = std::move(found.front());
    return 0;
} catch (const std::exception& error) {
    Log(1, kPciLog, __LINE__).Stream() << "A PCI device could not be read: " << error.what();
    return -1;
}
