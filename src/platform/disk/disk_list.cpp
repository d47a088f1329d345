#include "platform/disk/disk_list.h"

#include <set>
#include <string>
#include <utility>

#include "platform/log/log.h"

namespace Vantix::disk {
namespace {

constexpr const char* kDiskListLog = "disk_list";

}  // namespace

std::vector<VantixOptions::SoftwareIdentity_> EachOnce(const std::vector<DiskFacts>& disks) {
    std::set<std::pair<std::string, std::string>> seen;  // model, serial number
    std::vector<VantixOptions::SoftwareIdentity_> identities;
    for (const DiskFacts& disk : disks) {
        const bool is_known = !disk.model.empty() && !disk.serial.empty() &&
                              !seen.emplace(disk.model, disk.serial).second;
        if (is_known) {
            Log(4, kDiskListLog, __LINE__).Stream()
                << "left out " << disk.node << ": another way to a disk that is listed";
            continue;
        }
        identities.push_back(MakeIdentity(disk));
    }
    return identities;
}

}  // namespace Vantix::disk
