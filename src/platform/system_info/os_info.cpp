// The operating system that the scan runs on.

#include <optional>
#include <string>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/local/kernel_name.h"
#include "platform/local/local_host.h"
#include "platform/local/os_release.h"
#include "platform/local/running_os.h"
#include "platform/log/log.h"
#include "platform/system_info/system_info.h"

namespace {

using Vantix::transport::SystemRoot;

constexpr const char* kOsInfoLog = "os_info";
constexpr const char* kReleaseFiles[] = {"/etc/os-release", "/usr/lib/os-release"};

std::optional<std::string> ReadRelease(const SystemRoot& root) {
    for (const char* path : kReleaseFiles) {
        std::optional<std::string> text = root.ReadBytes(path);
        if (text) return text;
    }
    return std::nullopt;
}

std::string ReadArchitecture(const SystemRoot& root) {
    if (root.IsThisMachine()) return Vantix::local::RunningArchitecture();
    return root.ReadText("/proc/sys/kernel/arch");
}

// Debian's own file for what its os-release leaves out: "12.5".
std::string MinorFromDebianVersion(const SystemRoot& root) {
    const std::string version = root.ReadText("/etc/debian_version");
    const std::size_t dot = version.find('.');
    const bool is_number = version.find_first_not_of("0123456789.") == std::string::npos;
    return is_number && dot != std::string::npos ? version.substr(dot + 1) : std::string();
}

}  // namespace

int SystemInfoScan::GetOSInfo(std::pair<std::string, std::string>& os_arch,
                              std::string& os_minor_version) {
    os_arch = {};
    os_minor_version.clear();
    const auto root = Vantix::local::HostRoot();
    if (root->IsThisMachine()) {
        if (const auto running = Vantix::local::RunningOs()) {
            os_arch = {running->name, Vantix::local::RunningArchitecture()};
            os_minor_version = running->minor_version;
            return os_arch.first.empty() ? GET_OS_TYPE_FAILED : SUCCEED;
        }
    }
    const std::optional<std::string> text = ReadRelease(*root);
    if (!text) {
        Vantix::VantixConnection::ActiveRun::Option().run->AddNotice(
            "The operating system of this machine is not known: it has neither /etc/os-release nor "
            "/usr/lib/os-release.");
        Vantix::local::ReportDenied(*root);
        return GET_OS_TYPE_FAILED;
    }
    const auto release = Vantix::local::ParseOsRelease(*text);
    const Vantix::local::OsName os = Vantix::local::OsNameOf(release);
    os_arch = {os.name, ReadArchitecture(*root)};
    os_minor_version = os.minor_version;
    const auto id = release.find("ID");
    if (os_minor_version.empty() && id != release.end() && id->second == "debian") {
        os_minor_version = MinorFromDebianVersion(*root);
    }
    if (os_arch.second.empty()) {
        Vantix::Log(2, kOsInfoLog, __LINE__).Stream() << "The architecture is not told.";
    }
    return SUCCEED;
}

int SystemInfoScan::GetOSInfo(std::pair<std::string, std::string>& os_arch) {
    std::string minor_version;
    return GetOSInfo(os_arch, minor_version);
}
