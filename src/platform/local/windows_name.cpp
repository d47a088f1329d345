#include "platform/local/windows_name.h"

#include <cstddef>

namespace Vantix::local {
namespace {

struct Release {
    std::uint32_t first_build;
    const char* name;
};

// The first build of each release, newest first ("Windows Server release information", "Windows 10
// and 11 release information").
constexpr Release kServers[] = {
    {26100, "windows2025"},  {20348, "windows2022"}, {17763, "windows2019"}, {14393, "windows2016"},
    {9600, "windows2012r2"}, {9200, "windows2012"},  {0, "windows"},
};
constexpr Release kClients[] = {
    {22000, "windows11"},
    {10240, "windows10"},
    {9600, "windows8.1"},
    {0, "windows"},
};

template <std::size_t kCount>
std::string NameIn(const Release (&releases)[kCount], std::uint32_t build) {
    for (const Release& release : releases) {
        if (build >= release.first_build) return release.name;
    }
    return "windows";
}

}  // namespace

std::string WindowsName(std::uint32_t build, bool is_server) {
    return is_server ? NameIn(kServers, build) : NameIn(kClients, build);
}

}  // namespace Vantix::local
