#include "platform/disk/nvme_survey.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "platform/disk/nvme_identity.h"
#include "platform/log/log.h"
#include "platform/redfish/text_rules.h"

namespace Vantix::disk {
namespace {

using transport::SystemRoot;
using VantixConnection::RunContext;

constexpr const char* kNvmeSurveyLog = "nvme_survey";
constexpr const char* kControllers = "/sys/class/nvme/";

bool IsElsewhere(const std::string& transport) {
    return transport == "tcp" || transport == "rdma" || transport == "fc" || transport == "loop";
}

class Survey {
  public:
    Survey(const SystemRoot& root, const NvmeAdmin* admin, RunContext& run)
        : root_(root), admin_(admin), run_(run) {}

    std::optional<DiskFacts> Read(const std::string& name, const DiskPlaces& places) {
        const std::string folder = kControllers + name;
        if (IsElsewhere(Attribute(root_, folder + "/transport"))) {
            Log(4, kNvmeSurveyLog, __LINE__).Stream()
                << "left out " << name << ": not in this machine";
            return std::nullopt;
        }
        DiskFacts disk;
        disk.node = name;
        disk.source = "NVMe controller";
        disk.model = Attribute(root_, folder + "/model");
        disk.firmware = Attribute(root_, folder + "/firmware_rev");
        disk.serial = Attribute(root_, folder + "/serial");
        Ask(folder, disk);
        if (disk.model.empty() && disk.firmware.empty()) {
            Log(4, kNvmeSurveyLog, __LINE__).Stream()
                << "left out " << name << ": it tells nothing";
            return std::nullopt;
        }
        disk.serial = redfish::Known(disk.serial);
        disk.slot = SlotOf(folder, places);
        return disk;
    }

  private:
    void Ask(const std::string& folder, DiskFacts& disk);
    void Take(const NvmeIdentity& told, DiskFacts& disk);
    redfish::Slot SlotOf(const std::string& folder, const DiskPlaces& places) const {
        const std::string device = root_.Resolve(folder + "/device");
        return places.OfPci(device.empty() ? Attribute(root_, folder + "/address") : device);
    }

    const SystemRoot& root_;
    const NvmeAdmin* admin_;
    RunContext& run_;
};

void Survey::Ask(const std::string& folder, DiskFacts& disk) {
    const std::string state = Attribute(root_, folder + "/state");
    // A controller that is resetting or dead would keep the command waiting for a minute.
    const bool is_live = state.empty() || state == "live";
    DeviceAnswer answer;
    answer.cause = is_live ? "it is not of this machine" : "it is " + state;
    const std::string node = "/dev/" + disk.node;
    if (admin_ != nullptr && is_live) {
        answer = admin_->IdentifyController(node, Attribute(root_, folder + "/dev"));
    }
    if (answer.state == DeviceAnswer::State::kDenied) root_.AddDenied(node);
    const auto told = ReadIdentifyController(answer.data);
    if (told) {
        Take(*told, disk);
    } else {
        Log(4, kNvmeSurveyLog, __LINE__).Stream()
            << disk.node << " is as of driver start, it was not asked: " << answer.cause;
    }
}

void Survey::Take(const NvmeIdentity& told, DiskFacts& disk) {
    const std::string firmware = Plausible(told.firmware);
    if (!firmware.empty() && !disk.firmware.empty() && firmware != disk.firmware) {
        Log(2, kNvmeSurveyLog, __LINE__).Stream() << disk.node << " runs firmware " << firmware
                                                  << ", its driver still shows " << disk.firmware;
        run_.AddNotice("The disk " + disk.node + " runs firmware " + firmware +
                       ", but the system still shows " + disk.firmware +
                       " from before an update; the scan reports " + firmware + ".");
    }
    disk.firmware = redfish::FirstOf({firmware, disk.firmware});
    disk.model = redfish::FirstOf({Plausible(told.model), disk.model});
    disk.serial = redfish::FirstOf({Plausible(told.serial), disk.serial});
}

bool IsController(const std::string& name) {
    constexpr std::string_view kStart = "nvme";
    return name.rfind(kStart, 0) == 0 && name.size() > kStart.size() &&
           name.find_first_not_of("0123456789", kStart.size()) == std::string::npos;
}

}  // namespace

std::vector<DiskFacts> SurveyNvmeDisks(const SystemRoot& root, const DiskPlaces& places,
                                       const NvmeAdmin* admin, RunContext& run) {
    std::vector<DiskFacts> disks;
    Survey survey(root, admin, run);
    for (const std::string& name : root.List(kControllers)) {
        if (run.IsCancelled()) break;
        if (!IsController(name)) continue;
        std::optional<DiskFacts> disk = survey.Read(name, places);
        if (disk) disks.push_back(std::move(*disk));
    }
    return disks;
}

}  // namespace Vantix::disk
