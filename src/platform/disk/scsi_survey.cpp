#include "platform/disk/scsi_survey.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "platform/disk/scsi_pages.h"
#include "platform/disk/scsi_rules.h"
#include "platform/disk/udev_record.h"
#include "platform/log/log.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::disk {
namespace {

using transport::SystemRoot;

constexpr const char* kScsiSurveyLog = "scsi_survey";
constexpr const char* kDevices = "/sys/class/scsi_device/";
constexpr const char* kBlocks = "/sys/block/";

struct Place {
    std::string address;  ///< "0:0:1:0", or the block device where the address is not known
    std::string folder;
    std::string block;  ///< "sda"; empty when the disk has no block device
};

std::string FirstName(const SystemRoot& root, const std::string& folder) {
    const std::vector<std::string> names = root.List(folder);
    return names.empty() ? std::string() : names.front();
}

std::vector<Place> FindPlaces(const SystemRoot& root) {
    std::vector<Place> places;
    std::set<std::string> known;
    for (const std::string& address : root.List(kDevices)) {
        const std::string folder = kDevices + address + "/device";
        places.push_back({address, folder, FirstName(root, folder + "/block")});
        known.insert(address);
    }
    for (const std::string& block : root.List(kBlocks)) {
        if (block.rfind("sd", 0) != 0) continue;
        const std::string folder = kBlocks + block + "/device";
        const std::string device = root.Resolve(folder);
        const std::string address = device.substr(device.rfind('/') + 1);
        if (known.count(address) > 0) continue;
        places.push_back({address.empty() ? block : address, folder, block});
    }
    return places;
}

/// Reads one SCSI device; each attribute stands alone.
class ScsiReader {
  public:
    ScsiReader(const SystemRoot& root, const DiskPlaces& places, Place place)
        : root_(root), places_(places), place_(std::move(place)) {
        node_ = place_.block.empty() ? place_.address : place_.block;
        path_ = root_.Resolve(place_.folder);
    }

    std::optional<DiskFacts> Read() {
        ReadTexts();
        const std::string reason = ReasonToLeaveOut();
        if (!reason.empty()) {
            Log(4, kScsiSurveyLog, __LINE__).Stream() << "left out " << node_ << ": " << reason;
            return std::nullopt;
        }
        facts_.node = node_;
        facts_.serial = redfish::Known(Plausible(ReadSerialPage(Page("vpd_pg80"))));
        facts_.slot = places_.OfScsi(place_.address, place_.folder, path_);
        if (is_ata_) ReadAta();
        return std::move(facts_);
    }

  private:
    std::string Text(const char* name) const { return Attribute(root_, place_.folder + name); }
    std::string Page(const char* name) const {
        return root_.ReadBytes(place_.folder + "/" + name).value_or("");
    }
    void ReadTexts();
    std::string ReasonToLeaveOut() const;
    void ReadAta();
    void TakeAta(const AtaTexts& texts);
    AtaTexts UdevTexts() const;

    const SystemRoot& root_;
    const DiskPlaces& places_;
    Place place_;
    std::string node_, path_;
    std::string device_type_;
    bool is_ata_ = false;
    DiskFacts facts_;
};

void ScsiReader::ReadTexts() {
    const std::optional<InquiryData> inquiry = ReadInquiry(Page("inquiry"));
    const InquiryData told = inquiry.value_or(InquiryData{});
    device_type_ = Text("/type");
    if (device_type_.empty() && inquiry) device_type_ = std::to_string(told.device_type);
    const std::string vendor = redfish::FirstOf({Text("/vendor"), Plausible(told.vendor)});
    is_ata_ = vendor == "ATA";
    facts_.source = is_ata_ ? "ATA disk" : "SCSI disk";
    // Both name the way to the drive, not its maker.
    facts_.manufacturer = is_ata_ || vendor == "NVMe" ? "" : vendor;
    facts_.model = redfish::FirstOf({Text("/model"), Plausible(told.model)});
    facts_.firmware = redfish::FirstOf({Text("/rev"), Plausible(told.revision)});
}

std::string ScsiReader::ReasonToLeaveOut() const {
    ScsiClues clues;
    clues.device_type = device_type_;
    clues.device_path = path_;
    clues.model = facts_.model;
    clues.raid_level = Text("/raid_level");
    clues.is_raid_device = root_.Exists("/sys/class/raid_devices/" + place_.address);
    clues.naa_formats = ReadNamesPage(Page("vpd_pg83")).naa_formats;
    clues.wwid = Text("/wwid");
    const std::string reason = WhyNoDisk(clues);
    if (!reason.empty()) return reason;
    return facts_.model.empty() && facts_.firmware.empty() ? "it tells nothing of itself" : "";
}

void ScsiReader::ReadAta() {
    const std::optional<AtaTexts> told = ReadAtaPage(Page("vpd_pg89"));
    const AtaTexts texts = told ? *told : UdevTexts();
    TakeAta(texts);
    if (!texts.firmware.empty()) return;
    Log(2, kScsiSurveyLog, __LINE__).Stream()
        << "firmware revision of " << node_
        << " is known by four characters only: " << facts_.firmware;
}

void ScsiReader::TakeAta(const AtaTexts& texts) {
    facts_.model = redfish::FirstOf({Plausible(texts.model), facts_.model});
    facts_.firmware = redfish::FirstOf({Plausible(texts.firmware), facts_.firmware});
    facts_.serial = redfish::FirstOf({redfish::Known(Plausible(texts.serial)), facts_.serial});
}

/// What udev asked the drive when it appeared; older kernels do not show page 89h.
AtaTexts ScsiReader::UdevTexts() const {
    AtaTexts texts;
    const std::string number = Attribute(root_, kBlocks + place_.block + "/dev");
    if (place_.block.empty() || number.empty()) return texts;
    const std::string database = root_.ReadBytes("/run/udev/data/b" + number).value_or("");
    texts.firmware = UdevValue(database, "ID_REVISION");
    texts.serial = UdevValue(database, "ID_SERIAL_SHORT");
    return texts;
}

}  // namespace

std::vector<DiskFacts> SurveyScsiDisks(const SystemRoot& root, const DiskPlaces& places) {
    std::vector<DiskFacts> disks;
    for (Place& place : FindPlaces(root)) {
        std::optional<DiskFacts> disk = ScsiReader(root, places, std::move(place)).Read();
        if (disk) disks.push_back(std::move(*disk));
    }
    return disks;
}

}  // namespace Vantix::disk
