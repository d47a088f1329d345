#include "platform/connection/connection.h"
#include "platform/local/local_host.h"
#include "platform/raid/raid.h"
#include "platform/raid/raid_scan.h"
#include "transport/process/command_runner.h"

namespace Vantix::ARCCONF {

raid::RaidScan& ArcconfConfig::Scan() {
    if (scan_ == nullptr) {
        scan_ =
            std::make_shared<raid::RaidScan>(transport::SystemCommandRunner(), local::HostRoot(),
                                             VantixConnection::ActiveRun::Option().run);
    }
    return *scan_;
}

int ArcconfConfig::GetControllerList(std::vector<RaidController>& controllers, int /*mode*/) {
    return Scan().ListControllers(controllers);
}

int ArcconfConfig::GetCtrlDisks(RaidController& controller) {
    return Scan().ReadDisks(controller);
}

}  // namespace Vantix::ARCCONF
