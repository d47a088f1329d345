#include "platform/disk/disk_survey.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/disk/disk_facts.h"
#include "platform/disk/disk_list.h"
#include "platform/disk/disk_places.h"
#include "platform/disk/mmc_survey.h"
#include "platform/disk/nvme_survey.h"
#include "platform/disk/scsi_survey.h"

namespace Vantix::disk {
namespace {

void Append(std::vector<DiskFacts>&& more, std::vector<DiskFacts>& disks) {
    std::move(more.begin(), more.end(), std::back_inserter(disks));
}

}  // namespace

std::vector<VantixOptions::SoftwareIdentity_> SurveyDisks(const transport::SystemRoot& root,
                                                          const NvmeAdmin* admin,
                                                          VantixConnection::RunContext& run) {
    const DiskPlaces places(root);
    std::vector<DiskFacts> disks = SurveyNvmeDisks(root, places, admin, run);
    Append(SurveyScsiDisks(root, places), disks);
    Append(SurveyFlashDisks(root), disks);
    return EachOnce(disks);
}

}  // namespace Vantix::disk
