#include "platform/disk/mmc_survey.h"

#include <string>
#include <utility>

#include "platform/log/log.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::disk {
namespace {

constexpr const char* kMmcSurveyLog = "mmc_survey";
constexpr const char* kBlocks = "/sys/block/";

bool IsWholeDisk(const std::string& block) {
    constexpr std::string_view kStart = "mmcblk";
    return block.rfind(kStart, 0) == 0 && block.size() > kStart.size() &&
           block.find_first_not_of("0123456789", kStart.size()) == std::string::npos;
}

}  // namespace

std::vector<DiskFacts> SurveyFlashDisks(const transport::SystemRoot& root) {
    std::vector<DiskFacts> disks;
    for (const std::string& block : root.List(kBlocks)) {
        if (!IsWholeDisk(block)) continue;
        const std::string folder = kBlocks + block + "/device/";
        DiskFacts disk;
        disk.node = block;
        disk.source = "eMMC";
        disk.model = Attribute(root, folder + "name");
        disk.firmware = Attribute(root, folder + "fwrev");
        disk.serial = redfish::Known(Attribute(root, folder + "serial"));
        if (Attribute(root, folder + "type") == "MMC" && !disk.model.empty()) {
            disks.push_back(std::move(disk));
        } else {
            Log(4, kMmcSurveyLog, __LINE__).Stream() << "left out " << block << ": no eMMC";
        }
    }
    return disks;
}

}  // namespace Vantix::disk
