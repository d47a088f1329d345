#include "platform/pci/pci_inventory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>

#include "platform/log/log.h"
#include "platform/pci/pci_device.h"
#include "platform/pci/pci_ids.h"
#include "platform/pci/pci_names.h"
#include "platform/pci/pci_slots.h"
#include "platform/pci/vpd.h"
#include "transport/sysroot/root_file.h"

namespace Vantix::pci {
namespace {

constexpr const char* kPciInventoryLog = "platform/pci";
constexpr std::uint64_t kMaxIdFile = 8 * 1024 * 1024;
constexpr std::size_t kIdFilePiece = 64 * 1024;

using transport::SystemRoot;

struct Found {
    PciDevice device;
    std::string version;
};

PciNames ReadNames(const SystemRoot& root, const std::vector<Found>& found) {
    std::vector<PciIds> wanted;
    for (const Found& one : found) wanted.push_back(one.device.ids);
    for (const char* path : {"/usr/share/misc/pci.ids", "/usr/share/hwdata/pci.ids"}) {
        const transport::RootFile file(root, path);
        if (!file.IsOpen()) continue;
        // Piece by piece: as a whole it would be the largest thing in memory by far.
        std::uint64_t offset = 0;
        const auto next_piece = [&] {
            std::string piece;
            if (offset < kMaxIdFile) piece = file.Read(offset, kIdFilePiece);
            offset += piece.size();
            return piece;
        };
        return PciNames(next_piece, wanted);
    }
    Log(3, kPciInventoryLog, __LINE__).Stream()
        << "No PCI id file (package pci.ids): devices are shown by their numbers";
    return PciNames(std::string_view(), wanted);
}

std::string Joined(const std::string& left, const std::string& right) {
    return left.empty() || right.empty() ? left + right : left + " " + right;
}

// "Example Networks EX710 Controller (Dual Port Adapter)"
std::string DescriptionOf(const PciNames& names, const PciIds& ids) {
    const std::string device = names.Device(ids);
    const std::string subsystem = names.Subsystem(ids);
    if (device.empty() && subsystem.empty()) return {};
    std::string text = Joined(names.Vendor(ids), device);
    if (subsystem.empty() || subsystem == device) return text;
    return device.empty() ? Joined(text, subsystem) : text + " (" + subsystem + ")";
}

std::string FirstOf(std::initializer_list<std::string> texts) {
    const auto first = std::find_if(texts.begin(), texts.end(),
                                    [](const std::string& text) { return !text.empty(); });
    return first == texts.end() ? std::string() : *first;
}

PciInfo RecordOf(const Found& found, const PciNames& names, const PciSlots& slots) {
    const PciDevice& device = found.device;
    const PciIds& ids = device.ids;
    PciInfo record;
    record.ShortName = names.Device(ids);
    record.Label2 = FirstOf({device.label, names.Vendor(ids), device.address.Text()});
    record.Label3 = FirstOf({names.Class(ids), "PCI device"});
    record.IdPart1 = DeviceIdText(ids);
    record.IdPart2 = SubsystemIdText(ids);
    record.Description = DescriptionOf(names, ids);
    record.Slot = slots.SlotOf(device);
    record.Version = found.version;
    return record;
}

std::vector<Found> FindDevices(const PciHost& host, const std::optional<PciAddress>& only) {
    std::vector<Found> found;
    const std::vector<PciAddress> addresses =
        only ? std::vector<PciAddress>{*only} : ListPciAddresses(host.root);
    for (const PciAddress& address : addresses) {
        if (host.vpd_limits.is_cancelled && host.vpd_limits.is_cancelled()) break;
        std::optional<PciDevice> device = ReadPciDevice(host.root, address);
        if (!device) continue;
        std::string version =
            FirmwareVersionFromKernel(host.root, device->path, device->names, host.net_firmware);
        found.push_back({*std::move(device), std::move(version)});
    }
    return found;
}

// The functions of one card share its product data.
std::string CardOf(const PciDevice& device) {
    return device.address.DeviceText() + DeviceIdText(device.ids) + SubsystemIdText(device.ids);
}

bool HasVpd(const PciDevice& device) {
    return std::find(device.names.begin(), device.names.end(), "vpd") != device.names.end();
}

// The VPD files to read, one a card; those of earlier operations of the run are known.
std::vector<std::string> OpenVpds(const PciHost& host,
                                  const std::map<std::string, std::string>& files,
                                  std::vector<PieceReader>& readers) {
    std::vector<std::string> paths;
    for (const auto& [card, path] : files) {
        if (host.root.WasRead(path)) continue;
        PieceReader reader = host.open_vpd(host.root, path);
        if (!reader) continue;
        paths.push_back(path);
        readers.push_back(std::move(reader));
    }
    return paths;
}

void KeepReadings(const PciHost& host, const std::vector<std::string>& paths,
                  std::vector<VpdReading> readings, std::vector<std::string>& issues) {
    for (std::size_t i = 0; i < paths.size() && i < readings.size(); ++i) {
        VpdReading& reading = readings[i];
        const bool is_read = reading.state == VpdReading::State::kRead;
        if (reading.state == VpdReading::State::kTooSlow) {
            issues.push_back(paths[i] + ": no answer in time");
        }
        if (!is_read) {
            Log(2, kPciInventoryLog, __LINE__).Stream()
                << "Not readable in time or whole: " << paths[i];
        }
        host.root.AddRead(paths[i],
                          is_read ? std::optional(std::move(reading.bytes)) : std::nullopt);
    }
}

// Last of all, because it takes time and rights: only for devices that tell no version otherwise.
void AddVersionsFromVpd(const PciHost& host, std::vector<Found>& found,
                        std::vector<std::string>& issues) {
    std::map<std::string, std::string> files;  // card to VPD file
    for (const Found& one : found) {
        if (one.version.empty() && HasVpd(one.device)) {
            files.emplace(CardOf(one.device), one.device.path + "/vpd");
        }
    }
    if (files.empty() || !host.open_vpd) return;
    std::vector<PieceReader> readers;
    const std::vector<std::string> paths = OpenVpds(host, files, readers);
    KeepReadings(host, paths, ReadVpds(std::move(readers), host.vpd_limits), issues);
    for (Found& one : found) {
        const auto file = files.find(CardOf(one.device));
        if (!one.version.empty() || file == files.end() || !HasVpd(one.device)) continue;
        if (!host.root.WasRead(file->second)) continue;
        const std::optional<std::string> bytes = host.root.ReadBytes(file->second);
        if (bytes) one.version = FirmwareVersionOf(ParseVpd(*bytes));
    }
}

}  // namespace

PciSurvey ReadPciDevices(const PciHost& host, const std::optional<PciAddress>& only) {
    PciSurvey survey;
    std::vector<Found> found = FindDevices(host, only);
    if (found.empty()) return survey;
    AddVersionsFromVpd(host, found, survey.issues);
    const PciNames names = ReadNames(host.root, found);
    const PciSlots slots(host.root);
    for (const Found& one : found) survey.devices.push_back(RecordOf(one, names, slots));
    return survey;
}

}  // namespace Vantix::pci
