#include "platform/local/present_devices.h"

#include <windows.h>

#include <initguid.h>  // makes devpkey.h define its keys

#include <devpkey.h>
#include <setupapi.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/log/log.h"
#include "platform/os/wide_text_windows.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::local {
namespace {

constexpr const char* kPresentDevicesLog = "present_devices";
constexpr DWORD kMostBytes = 64 * 1024;

std::string CleanTextOf(const std::wstring& wide) {
    return transport::CleanText(Utf8Of(wide));
}

// A value as the system keeps it, and its type by the caller's own numbers.
struct Value {
    DWORD type = 0;
    std::string bytes;
};

std::wstring WideTextOf(const Value& value) {
    std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.bytes.data(), text.size() * sizeof(wchar_t));
    return text;
}

// NUL ends a text, and an empty text ends the list.
std::vector<std::string> TextsOf(const Value& value) {
    const std::wstring all = WideTextOf(value);
    std::vector<std::string> texts;
    for (std::size_t at = 0; at < all.size() && all[at] != L'\0';) {
        const std::size_t end = std::min(all.find(L'\0', at), all.size());
        texts.push_back(CleanTextOf(all.substr(at, end - at)));
        at = end + 1;
    }
    return texts;
}

std::optional<std::uint32_t> NumberOf(const Value& value) {
    std::uint32_t number = 0;
    if (value.bytes.size() != sizeof(number)) return std::nullopt;
    std::memcpy(&number, value.bytes.data(), sizeof(number));
    return number;
}

// `call` fills a buffer, or fails and tells the size that it needs.
template <typename Call>
std::optional<Value> Fetch(const Call& call) {
    Value value;
    value.bytes.resize(512);
    DWORD needed = 0;
    bool is_read = call(value, needed);
    if (!is_read && GetLastError() == ERROR_INSUFFICIENT_BUFFER && needed <= kMostBytes) {
        value.bytes.resize(needed);
        is_read = call(value, needed);
    }
    if (!is_read || needed > value.bytes.size()) return std::nullopt;
    value.bytes.resize(needed);
    return value;
}

class DeviceReader {
  public:
    DeviceReader(HDEVINFO list, SP_DEVINFO_DATA& device) : list_(list), device_(device) {}

    [[nodiscard]] PresentDevice Read() const {
        PresentDevice found;
        found.instance_id = InstanceId();
        found.hardware_ids = Texts(SPDRP_HARDWAREID);
        found.compatible_ids = Texts(SPDRP_COMPATIBLEIDS);
        found.class_name = Text(SPDRP_CLASS);
        found.description = Text(SPDRP_DEVICEDESC);
        found.manufacturer = Text(SPDRP_MFG);
        found.service = Text(SPDRP_SERVICE);
        found.driver_key = Text(SPDRP_DRIVER);
        found.driver_version = Text(DEVPKEY_Device_DriverVersion);
        found.driver_provider = Text(DEVPKEY_Device_DriverProvider);
        found.driver_package = Text(DEVPKEY_Device_DriverInfPath);
        found.firmware_version = Text(DEVPKEY_Device_FirmwareVersion);
        if (found.firmware_version.empty()) {
            found.firmware_version = Text(DEVPKEY_Device_FirmwareRevision);
        }
        found.bus = Number(DEVPKEY_Device_BusNumber);
        found.place = Number(DEVPKEY_Device_Address);
        found.slot = Number(DEVPKEY_Device_UINumber);
        found.problem = Number(DEVPKEY_Device_ProblemCode);
        found.location_paths = Texts(DEVPKEY_Device_LocationPaths);
        return found;
    }

  private:
    [[nodiscard]] std::string InstanceId() const {
        std::wstring id(256, L'\0');
        DWORD length = 0;
        bool is_read = Ask(id, length);
        if (!is_read && GetLastError() == ERROR_INSUFFICIENT_BUFFER && length <= kMostBytes) {
            id.resize(length);
            is_read = Ask(id, length);
        }
        return is_read ? CleanTextOf(id) : std::string();
    }
    bool Ask(std::wstring& id, DWORD& length) const {
        return SetupDiGetDeviceInstanceIdW(list_, &device_, id.data(),
                                           static_cast<DWORD>(id.size()), &length) != 0;
    }

    [[nodiscard]] std::optional<Value> Registered(DWORD property) const {
        return Fetch([&](Value& value, DWORD& needed) {
            return SetupDiGetDeviceRegistryPropertyW(list_, &device_, property, &value.type,
                                                     reinterpret_cast<BYTE*>(value.bytes.data()),
                                                     static_cast<DWORD>(value.bytes.size()),
                                                     &needed) != 0;
        });
    }
    [[nodiscard]] std::optional<Value> Property(const DEVPROPKEY& key) const {
        return Fetch([&](Value& value, DWORD& needed) {
            return SetupDiGetDevicePropertyW(list_, &device_, &key, &value.type,
                                             reinterpret_cast<BYTE*>(value.bytes.data()),
                                             static_cast<DWORD>(value.bytes.size()), &needed,
                                             0) != 0;
        });
    }

    [[nodiscard]] std::string Text(DWORD property) const {
        const auto value = Registered(property);
        return value && value->type == REG_SZ ? CleanTextOf(WideTextOf(*value)) : std::string();
    }
    [[nodiscard]] std::string Text(const DEVPROPKEY& key) const {
        const auto value = Property(key);
        const bool is_text = value && value->type == DEVPROP_TYPE_STRING;
        return is_text ? CleanTextOf(WideTextOf(*value)) : std::string();
    }
    [[nodiscard]] std::vector<std::string> Texts(DWORD property) const {
        const auto value = Registered(property);
        const bool is_list = value && value->type == REG_MULTI_SZ;
        return is_list ? TextsOf(*value) : std::vector<std::string>();
    }
    [[nodiscard]] std::vector<std::string> Texts(const DEVPROPKEY& key) const {
        const auto value = Property(key);
        const bool is_list = value && value->type == DEVPROP_TYPE_STRING_LIST;
        return is_list ? TextsOf(*value) : std::vector<std::string>();
    }
    [[nodiscard]] std::optional<std::uint32_t> Number(const DEVPROPKEY& key) const {
        const auto value = Property(key);
        const bool is_number = value && value->type == DEVPROP_TYPE_UINT32;
        return is_number ? NumberOf(*value) : std::nullopt;
    }

    HDEVINFO list_;
    SP_DEVINFO_DATA& device_;
};

class DeviceList {
  public:
    DeviceList()
        : list_(SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_ALLCLASSES | DIGCF_PRESENT)) {
    }
    ~DeviceList() {
        if (IsOpen()) SetupDiDestroyDeviceInfoList(list_);
    }
    DeviceList(const DeviceList&) = delete;
    DeviceList& operator=(const DeviceList&) = delete;

    [[nodiscard]] bool IsOpen() const { return list_ != INVALID_HANDLE_VALUE; }

    [[nodiscard]] std::vector<PresentDevice> Read() const {
        std::vector<PresentDevice> devices;
        SP_DEVINFO_DATA device{};
        device.cbSize = sizeof(device);
        for (DWORD i = 0; SetupDiEnumDeviceInfo(list_, i, &device) != 0; ++i) {
            devices.push_back(DeviceReader(list_, device).Read());
        }
        return devices;
    }

  private:
    HDEVINFO list_;
};

}  // namespace

std::optional<std::vector<PresentDevice>> PresentDevices() {
    const DeviceList list;
    if (!list.IsOpen()) {
        Log(1, kPresentDevicesLog, __LINE__).Stream()
            << "Windows lists no devices, error " << GetLastError();
        return std::vector<PresentDevice>();
    }
    return list.Read();
}

}  // namespace Vantix::local
