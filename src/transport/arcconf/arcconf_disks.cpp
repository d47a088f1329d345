#include <algorithm>
#include <array>
#include <utility>

#include "transport/arcconf/arcconf_lines.h"
#include "transport/arcconf/arcconf_output.h"
#include "transport/text/ascii_case.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kMostDisks = 4096;

struct Device {
    ArcconfDisk disk;
    bool is_other = false;  ///< an enclosure or the like
};

bool IsOtherKind(std::string_view key) {
    constexpr std::array<std::string_view, 3> kOthers = {"enclosure", "expander", "backplane"};
    const std::string lower = AsciiLowerText(key);
    return std::any_of(kOthers.begin(), kOthers.end(), [&](std::string_view other) {
        return lower.find(other) != std::string::npos;
    });
}

// "Enclosure 0, Slot 3(Connector 0:CN0)" or "Connector 1, Device 2"
std::string BayOf(const std::string& location) {
    auto bay = NumberBehind(location, "slot ");
    if (!bay) bay = NumberBehind(location, "device ");
    return bay ? std::to_string(*bay) : std::string();
}

void TakeValue(const ArcconfLine& line, ArcconfDisk& disk) {
    const std::string key = AsciiLowerText(line.key);
    const std::array<std::pair<std::string_view, std::string*>, 5> fields = {{
        {"vendor", &disk.vendor},
        {"model", &disk.model},
        {"part number", &disk.part_number},
        {"firmware", &disk.firmware_version},
        {"serial number", &disk.serial_number},
    }};
    for (const auto& [name, field] : fields) {
        if (key == name && field->empty()) *field = line.value;
    }
    if (key == "reported location" && disk.bay.empty()) disk.bay = BayOf(line.value);
}

class DeviceList {
  public:
    void Begin() {
        Store();
        device_.emplace();
    }
    void End() {
        Store();
        device_.reset();
    }
    void Take(const ArcconfLine& line) {
        if (!device_) return;
        if (line.has_value) {
            TakeValue(line, device_->disk);
        } else if (AsciiLowerText(line.key).rfind("device is a", 0) == 0) {
            device_->is_other = IsOtherKind(line.key);
        }
    }
    [[nodiscard]] std::vector<ArcconfDisk> Disks() {
        End();
        return std::move(disks_);
    }

  private:
    // A bay that lost its disk is still listed, without a model.
    void Store() {
        if (!device_ || device_->is_other || device_->disk.model.empty()) return;
        if (disks_.size() < kMostDisks) disks_.push_back(device_->disk);
    }

    std::optional<Device> device_;
    std::vector<ArcconfDisk> disks_;
};

}  // namespace

ArcconfDisks ParseArcconfDisks(std::string_view output) {
    ArcconfDisks result;
    DeviceList devices;
    ArcconfLines lines(output);
    while (const auto line = lines.Next()) {
        const std::string key = AsciiLowerText(line->key);
        if (key.rfind("command completed successfully", 0) == 0) result.is_whole = true;
        const bool is_device_list = line->section == "physical device information";
        result.has_section |= is_device_list;
        if (!is_device_list) {
            devices.End();
        } else if (!line->has_value && key.rfind("device #", 0) == 0) {
            lines.LeaveSubsection();
            devices.Begin();
        } else if (!line->has_value && key.rfind("channel #", 0) == 0) {
            lines.LeaveSubsection();
            devices.End();
        } else if (line->subsection.empty()) {
            devices.Take(*line);
        }
    }
    result.disks = devices.Disks();
    return result;
}

}  // namespace Vantix::transport
