#include "platform/system_info/driver_texts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include "transport/modinfo/module_object.h"
#include "transport/sysroot/root_file.h"

namespace Vantix::system_info {
namespace {

using transport::SystemRoot;

constexpr std::size_t kMostIndexBytes = 16 * 1024 * 1024;

std::string ReadIndex(const SystemRoot& root, const std::string& path) {
    const transport::RootFile file(root, path);
    // A piece at a time: the file's size is not known, and most are small.
    constexpr std::size_t kStep = 256 * 1024;
    std::string text;
    while (text.size() < kMostIndexBytes) {
        const std::string piece = file.Read(text.size(), kStep);
        text += piece;
        if (piece.size() < kStep) break;
    }
    return text;
}

// PCI Code and ID Assignment Specification, base classes.
std::string KindOf(const std::string& class_code) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 12> kKinds = {{
        {"01", "Storage controller"},
        {"02", "Network controller"},
        {"03", "Display controller"},
        {"04", "Multimedia device"},
        {"07", "Communication controller"},
        {"09", "Input device"},
        {"0b", "Co-processor"},
        {"0c", "Serial bus controller"},
        {"0d", "Wireless controller"},
        {"0f", "Satellite communication controller"},
        {"10", "Encryption controller"},
        {"12", "Processing accelerator"},
    }};
    const auto kind = std::find_if(kKinds.begin(), kKinds.end(), [&](const auto& row) {
        return class_code.rfind(row.first, 0) == 0;
    });
    return std::string(kind == kKinds.end() ? "Device" : kind->second);
}

}  // namespace

std::map<std::string, std::string> ReadModuleDescriptions(const SystemRoot& root,
                                                          const std::string& kernel_release,
                                                          const transport::ModuleNames& modules) {
    std::map<std::string, std::string> descriptions;
    if (kernel_release.empty() || modules.empty()) return descriptions;
    const std::string folder = "/lib/modules/" + kernel_release + "/";
    const auto builtin = transport::ParseBuiltinDescriptions(
        ReadIndex(root, folder + "modules.builtin.modinfo"), modules);
    descriptions.insert(builtin.begin(), builtin.end());
    const auto paths =
        transport::ParseModulePaths(ReadIndex(root, folder + "modules.dep"), modules);
    for (const auto& [module, path] : paths) {
        const transport::RootFile file(root, folder + path);
        std::string text = transport::ReadModuleDescription(
            [&](std::uint64_t offset, std::size_t size) { return file.Read(offset, size); });
        if (!text.empty()) descriptions[module] = std::move(text);
    }
    return descriptions;
}

std::string DriverDescription(const std::string& description, const std::string& source_version) {
    if (source_version.empty()) return description;
    const std::string source = "source version " + source_version;
    return description.empty() ? source : description + " (" + source + ")";
}

std::vector<DriverData> MissingDrivers(const std::vector<DriverlessDevice>& devices) {
    constexpr int kMostAddresses = 4;
    std::vector<DriverData> records;
    for (const DriverlessDevice& device : devices) {
        const std::string identifier = "NoDriver#PCI_" + device.ids;
        auto record = std::find_if(records.begin(), records.end(), [&](const DriverData& known) {
            return known.Identifier == identifier;
        });
        if (record == records.end()) {
            DriverData fresh;
            fresh.Identifier = identifier;
            fresh.Description = KindOf(device.class_code) + " without driver at " + device.address;
            records.push_back(std::move(fresh));
            record = std::prev(records.end());
        } else if (record->DevicePresent < kMostAddresses) {
            record->Description += ", " + device.address;
        } else if (record->DevicePresent == kMostAddresses) {
            record->Description += " and more";
        }
        ++record->DevicePresent;
    }
    return records;
}

}  // namespace Vantix::system_info
