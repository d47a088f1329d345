#include "platform/system_info/driver_links.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "transport/text/text_cleaning.h"

namespace Vantix::system_info {
namespace {

using transport::SystemRoot;

// Their devices are no hardware of their own: firmware objects that stand for a device of another
// bus, processors, clocks, memory blocks, services of a PCI port.
bool IsBookkeeping(const std::string& bus) {
    constexpr std::array<std::string_view, 17> kBuses = {
        "acpi",           "clockevents", "clocksource", "container",   "cpu",          "edac",
        "event_source",   "faux",        "genpd",       "gpio",        "machinecheck", "memory",
        "memory_tiering", "node",        "pci_express", "serial-base", "workqueue"};
    return std::find(kBuses.begin(), kBuses.end(), bus) != kBuses.end();
}

std::string Hexadecimal(const std::string& text) {
    return text.rfind("0x", 0) == 0 ? text.substr(2) : text;
}

class LinkReader {
  public:
    explicit LinkReader(const SystemRoot& root) : root_(root) {}

    DriverLinks Read() {
        const std::vector<std::string> buses = root_.List("/sys/bus");
        links_.has_buses = !buses.empty();
        for (const std::string& bus : buses) {
            if (!IsBookkeeping(bus)) ReadBus(bus);
        }
        return std::move(links_);
    }

  private:
    void ReadBus(const std::string& bus) {
        const std::string folder = "/sys/bus/" + bus;
        std::map<std::string, DriverUse> uses;
        for (const std::string& device : root_.List(folder + "/devices")) {
            const std::string path = folder + "/devices/" + device;
            const std::string driver = root_.LinkName(path + "/driver");
            if (!driver.empty()) ++uses[driver].devices;
            if (bus != "pci") continue;
            if (driver.empty()) {
                AddDriverless(device, path);
            } else {
                AddAdapter(path, uses[driver]);
            }
        }
        for (const std::string& driver : root_.List(folder + "/drivers")) uses.try_emplace(driver);
        for (const auto& [driver, use] : uses) AddDriver(folder, driver, use);
    }

    void AddAdapter(const std::string& path, DriverUse& use) {
        constexpr std::size_t kDigits = 8;
        if (!WantsDriver(Hexadecimal(root_.ReadText(path + "/class")))) return;
        const std::string ids = Ids(path);
        const bool is_hexadecimal =
            ids.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
        if (ids.size() == kDigits && is_hexadecimal) ++use.adapters[ids];
    }

    void AddDriver(const std::string& bus_folder, const std::string& driver,
                   const DriverUse& on_bus) {
        const std::string module = root_.LinkName(bus_folder + "/drivers/" + driver + "/module");
        if (on_bus.devices == 0 && !IsLoaded(module)) return;
        DriverUse& use = links_.drivers[module.empty() ? driver : module];
        use.module = module;
        use.devices += on_bus.devices;
        for (const auto& [ids, count] : on_bus.adapters) use.adapters[ids] += count;
    }

    [[nodiscard]] std::string Ids(const std::string& path) const {
        return Hexadecimal(root_.ReadText(path + "/vendor")) +
               Hexadecimal(root_.ReadText(path + "/device"));
    }

    // Built-in modules have no such file; a generic kernel has hundreds that serve nothing.
    [[nodiscard]] bool IsLoaded(const std::string& module) const {
        return !module.empty() && root_.Exists("/sys/module/" + module + "/initstate");
    }

    void AddDriverless(const std::string& address, const std::string& path) {
        DriverlessDevice device;
        device.class_code = Hexadecimal(root_.ReadText(path + "/class"));
        // A virtual function is often left alone on purpose, for a guest.
        if (!WantsDriver(device.class_code) || !root_.LinkName(path + "/physfn").empty()) return;
        device.address = transport::CleanText(address);
        device.ids = Ids(path);
        if (!device.ids.empty()) links_.driverless.push_back(std::move(device));
    }

    const SystemRoot& root_;
    DriverLinks links_;
};

}  // namespace

bool WantsDriver(const std::string& class_code) {
    // PCI Code and ID Assignment Specification: memory, bridge, system peripheral, processor,
    // signal processing, non-essential instrumentation.
    constexpr std::array<std::string_view, 6> kWithout = {"05", "06", "08", "0b", "11", "13"};
    if (class_code.rfind("0b40", 0) == 0) return true;  // co-processors
    const std::string_view base_class = std::string_view(class_code).substr(0, 2);
    return base_class.size() == 2 &&
           std::find(kWithout.begin(), kWithout.end(), base_class) == kWithout.end();
}

DriverLinks ReadDriverLinks(const SystemRoot& root) {
    return LinkReader(root).Read();
}

}  // namespace Vantix::system_info
