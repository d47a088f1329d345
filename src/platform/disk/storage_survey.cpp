#include "platform/disk/storage_survey.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "platform/disk/disk_facts.h"
#include "platform/disk/disk_list.h"
#include "platform/disk/nvme_identity.h"
#include "platform/disk/scsi_pages.h"
#include "platform/disk/scsi_rules.h"
#include "platform/disk/storage_queries.h"
#include "platform/log/log.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::disk {
namespace {

using VantixConnection::RunContext;

constexpr const char* kStorageSurveyLog = "storage_survey";
constexpr std::size_t kMostAnswer = 4096;

enum class Kind { kNvme, kScsi, kFlash };

Kind KindOf(StorageBus bus) {
    if (bus == StorageBus::kNvme) return Kind::kNvme;
    return bus == StorageBus::kMmc ? Kind::kFlash : Kind::kScsi;
}

bool IsAtaBus(StorageBus bus) {
    return bus == StorageBus::kAta || bus == StorageBus::kAtapi || bus == StorageBus::kSata;
}

std::string ReachReason(StorageBus bus) {
    switch (bus) {
        case StorageBus::kIscsi:
            return "on a network (iSCSI)";
        case StorageBus::kFibreChannel:
            return "on a network (Fibre Channel)";
        case StorageBus::kNvmeOverFabrics:
            return "on a network (NVMe)";
        case StorageBus::kUsb:
            return "on USB";
        case StorageBus::kFireWire:
            return "on FireWire";
        case StorageBus::kSd:
            return "no eMMC";
        case StorageBus::kVirtual:
        case StorageBus::kFileBackedVirtual:
            return "a virtual disk";
        case StorageBus::kSpaces:
            return "a logical volume";
        case StorageBus::kPersistentMemory:
            return "persistent memory";
        default:
            return {};
    }
}

// Paravirtual disks have no bus of their own here; their drivers name the hypervisor as the maker.
bool IsOfHypervisor(const StorageDevice& device) {
    return device.vendor == "QEMU" || device.vendor == "Red Hat" || device.vendor == "Msft";
}

/// Reads one disk; each answer stands alone.
class StorageReader {
  public:
    StorageReader(const StorageRequests& storage, const transport::SystemRoot& root,
                  RunContext& run, int number)
        : storage_(storage),
          root_(root),
          run_(run),
          number_(number),
          node_("PhysicalDrive" + std::to_string(number)) {}

    std::optional<DiskFacts> Read() {
        ReadDevice();
        const std::string reason = ReasonToLeaveOut();
        if (!reason.empty()) {
            Log(4, kStorageSurveyLog, __LINE__).Stream() << "left out " << node_ << ": " << reason;
            return std::nullopt;
        }
        TakeDevice();
        if (kind_ == Kind::kNvme) AskController();
        if (is_ata_ && !IsAtaBus(device_.bus)) AskAtaPage();
        facts_.serial = redfish::Known(facts_.serial);
        return std::move(facts_);
    }
    [[nodiscard]] Kind FoundKind() const { return kind_; }

  private:
    [[nodiscard]] std::string Answer(const std::string& query, const char* what) const;
    void NoteDenied(const DeviceAnswer& answer) const {
        if (answer.state == DeviceAnswer::State::kDenied) root_.AddDenied("\\\\.\\" + node_);
    }
    void ReadDevice();
    [[nodiscard]] std::string ReasonToLeaveOut() const;
    void TakeDevice();
    void AskController();
    void Compare(const std::string& firmware);
    void AskAtaPage();

    const StorageRequests& storage_;
    const transport::SystemRoot& root_;
    RunContext& run_;
    int number_;
    std::string node_;
    StorageDevice device_;
    Kind kind_ = Kind::kScsi;
    bool is_ata_ = false;
    DiskFacts facts_;
};

std::string StorageReader::Answer(const std::string& query, const char* what) const {
    const std::size_t most = std::max(kMostAnswer, query.size());
    DeviceAnswer answer = storage_.Query(number_, query, most);
    if (answer.state == DeviceAnswer::State::kRead) return std::move(answer.data);
    NoteDenied(answer);
    Log(4, kStorageSurveyLog, __LINE__).Stream()
        << node_ << " does not tell its " << what << ": " << answer.cause;
    return {};
}

void StorageReader::ReadDevice() {
    device_ = ReadStorageDevice(Answer(DeviceQuery(), "device")).value_or(StorageDevice{});
    if (device_.bus == StorageBus::kUnknown) {
        device_.bus = ReadAdapterBus(Answer(AdapterQuery(), "adapter"));
    }
    kind_ = KindOf(device_.bus);
    is_ata_ = IsAtaBus(device_.bus) || device_.vendor == "ATA";
}

std::string StorageReader::ReasonToLeaveOut() const {
    const std::string reach = ReachReason(device_.bus);
    if (!reach.empty()) return reach;
    if (device_.model.empty() && device_.revision.empty()) return "it tells nothing of itself";
    if (kind_ != Kind::kScsi) return {};
    if (IsOfHypervisor(device_)) return "a hypervisor's disk";
    ScsiClues clues;
    clues.device_type = std::to_string(device_.device_type);
    clues.model = device_.model;
    clues.naa_formats = ReadNaaFormats(Answer(NamesQuery(), "names"));
    return WhyNoDisk(clues);
}

void StorageReader::TakeDevice() {
    facts_.node = node_;
    facts_.model = Plausible(device_.model);
    facts_.firmware = Plausible(device_.revision);
    if (kind_ == Kind::kNvme) {
        facts_.source = "NVMe controller";
        return;
    }
    facts_.serial = Plausible(device_.serial);
    if (kind_ == Kind::kFlash) {
        facts_.source = "eMMC";
        return;
    }
    facts_.source = is_ata_ ? "ATA disk" : "SCSI disk";
    // Both name the way to the drive, not its maker.
    const bool has_maker = device_.vendor != "ATA" && device_.vendor != "NVMe";
    facts_.manufacturer = has_maker ? Plausible(device_.vendor) : "";
}

void StorageReader::AskController() {
    const std::string answer = Answer(IdentifyQuery(), "identity");
    const auto told = ReadIdentifyController(ReadIdentifyData(answer));
    if (!told) return;
    Compare(Plausible(told->firmware));
    facts_.firmware = redfish::FirstOf({Plausible(told->firmware), facts_.firmware});
    facts_.model = redfish::FirstOf({Plausible(told->model), facts_.model});
    facts_.serial = Plausible(told->serial);
}

// Some drivers show a part of the revision.
void StorageReader::Compare(const std::string& firmware) {
    if (firmware.find(facts_.firmware) != std::string::npos || firmware.empty()) return;
    Log(2, kStorageSurveyLog, __LINE__).Stream()
        << node_ << " runs firmware " << firmware << ", its driver still shows " << facts_.firmware;
    run_.AddNotice("The disk " + node_ + " runs firmware " + firmware +
                   ", but the system still shows " + facts_.firmware +
                   " from before an update; the scan reports " + firmware + ".");
}

void StorageReader::AskAtaPage() {
    constexpr std::uint8_t kAtaInformation = 0x89;
    const DeviceAnswer answer = storage_.ReadPage(number_, kAtaInformation, kMostAnswer);
    NoteDenied(answer);
    const auto told = ReadAtaPage(answer.data);
    if (!told || told->firmware.empty()) {
        Log(2, kStorageSurveyLog, __LINE__).Stream()
            << "firmware revision of " << node_
            << " is known by four characters only: " << facts_.firmware << " " << answer.cause;
    }
    if (!told) return;
    facts_.model = redfish::FirstOf({Plausible(told->model), facts_.model});
    facts_.firmware = redfish::FirstOf({Plausible(told->firmware), facts_.firmware});
    facts_.serial = redfish::FirstOf({Plausible(told->serial), facts_.serial});
}

}  // namespace

std::vector<VantixOptions::SoftwareIdentity_> SurveyStorage(const StorageRequests& storage,
                                                            const transport::SystemRoot& root,
                                                            RunContext& run) {
    std::vector<int> numbers = storage.Disks();
    std::sort(numbers.begin(), numbers.end());
    std::vector<std::pair<Kind, DiskFacts>> found;
    for (const int number : numbers) {
        if (run.IsCancelled()) break;
        StorageReader reader(storage, root, run, number);
        std::optional<DiskFacts> disk = reader.Read();
        if (disk) found.emplace_back(reader.FoundKind(), std::move(*disk));
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    std::vector<DiskFacts> disks;
    for (auto& [kind, disk] : found) disks.push_back(std::move(disk));
    return EachOnce(disks);
}

}  // namespace Vantix::disk
