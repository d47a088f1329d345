#include "platform/disk/disk_survey.h"

#include <set>
#include <string>
#include <utility>

#include "platform/disk/disk_facts.h"
#include "platform/disk/disk_places.h"
#include "platform/disk/mmc_survey.h"
#include "platform/disk/nvme_survey.h"
#include "platform/disk/scsi_survey.h"
#include "platform/log/log.h"

namespace Vantix::disk {
namespace {

constexpr const char* kLogSource = "disk_survey";

/// Collects disks, each once.
class Disks {
  public:
    void Add(const std::vector<DiskFacts>& disks) {
        for (const DiskFacts& disk : disks) Add(disk);
    }
    std::vector<VantixOptions::SoftwareIdentity_> Take() { return std::move(identities_); }

  private:
    void Add(const DiskFacts& disk) {
        const bool is_known = !disk.model.empty() && !disk.serial.empty() &&
                              !seen_.emplace(disk.model, disk.serial).second;
        if (is_known) {
            Log(4, kLogSource, __LINE__).Stream()
                << "left out " << disk.node << ": another way to a disk that is listed";
            return;
        }
        identities_.push_back(MakeIdentity(disk));
    }

    std::set<std::pair<std::string, std::string>> seen_;  ///< model, serial number
    std::vector<VantixOptions::SoftwareIdentity_> identities_;
};

}  // namespace

std::vector<VantixOptions::SoftwareIdentity_> SurveyDisks(const transport::SystemRoot& root,
                                                          const NvmeAdmin* admin,
                                                          VantixConnection::RunContext& run) {
    const DiskPlaces places(root);
    Disks disks;
    disks.Add(SurveyNvmeDisks(root, places, admin, run));
    disks.Add(SurveyScsiDisks(root, places));
    disks.Add(SurveyFlashDisks(root));
    return disks.Take();
}

}  // namespace Vantix::disk
