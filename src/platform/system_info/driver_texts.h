// What is said of drivers: descriptions and versions of modules, words for devices without driver.
// Private to this family.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/system_info/driver_links.h"
#include "platform/system_info/system_info.h"
#include "transport/modinfo/module_index.h"
#include "transport/sysroot/system_root.h"

namespace Vantix::system_info {

/// The descriptions of modules that a kernel's files tell, by module name: of loaded ones from
/// their own uncompressed files, of built-in ones from the kernel's index.
[[nodiscard]] std::map<std::string, std::string> ReadModuleDescriptions(
    const transport::SystemRoot& root, const std::string& kernel_release,
    const transport::ModuleNames& modules);

/// "Example Driver (source version 1A2B)"; either part may be empty.
[[nodiscard]] std::string DriverDescription(const std::string& description,
                                            const std::string& source_version);

/// One record for all devices with the same ids: identifier "NoDriver#PCI_" and the ids, no
/// version.
[[nodiscard]] std::vector<DriverData> MissingDrivers(const std::vector<DriverlessDevice>& devices);

}  // namespace Vantix::system_info
