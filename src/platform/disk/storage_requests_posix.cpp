#include "platform/disk/storage_requests.h"

namespace Vantix::disk {

// The kernel shows disks as files (disk_survey.h).
const StorageRequests* SystemStorage() {
    return nullptr;
}

}  // namespace Vantix::disk
