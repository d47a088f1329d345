#include "support/registry_device_windows.h"

#include <cstdio>

#include "platform/os/wide_text_windows.h"

namespace test_support {
namespace {

using Vantix::WideOf;

constexpr const char* kInstance = "TEST";
// Wine marks the type of a property so, because the registry has types of its own.
constexpr DWORD kPropertyMark = 0xFFFF0000;

std::string TreeOf(const std::string& ids) {
    return "SYSTEM\\CurrentControlSet\\Enum\\" + ids;
}

// Each text with its NUL, and one more for the end.
std::wstring ListOf(const std::vector<std::string>& texts) {
    std::wstring list;
    for (const std::string& text : texts) list += WideOf(text) + L'\0';
    return list + L'\0';
}

std::size_t BytesOf(const std::wstring& text) {
    return text.size() * sizeof(wchar_t);
}

std::string FolderOf(const DEVPROPKEY& key) {
    const GUID& id = key.fmtid;
    char text[80] = {};
    std::snprintf(text, sizeof(text),
                  "Properties\\{%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}\\%04lX",
                  id.Data1, id.Data2, id.Data3, id.Data4[0], id.Data4[1], id.Data4[2], id.Data4[3],
                  id.Data4[4], id.Data4[5], id.Data4[6], id.Data4[7], key.pid);
    return text;
}

HKEY Made(HKEY parent, const std::string& path) {
    HKEY key = nullptr;
    RegCreateKeyExW(parent, WideOf(path).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                    nullptr);
    return key;
}

}  // namespace

bool IsWine() {
    const HMODULE module = GetModuleHandleW(L"ntdll.dll");
    return module != nullptr && GetProcAddress(module, "wine_get_version") != nullptr;
}

RegistryDevice::RegistryDevice(const std::string& ids, const std::string& description)
    : ids_(ids), path_(TreeOf(ids) + "\\" + kInstance) {
    // What a test that died left there.
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, WideOf(TreeOf(ids)).c_str());
    key_ = Made(HKEY_LOCAL_MACHINE, path_);
    // Wine lists only devices of a class; this is the one of those that have no driver.
    Text("ClassGUID", "{4d36e97e-e325-11ce-bfc1-08002be10318}");
    Text("DeviceDesc", description);
}

RegistryDevice::~RegistryDevice() {
    if (key_ != nullptr) RegCloseKey(key_);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, WideOf(TreeOf(ids_)).c_str());
}

std::string RegistryDevice::InstanceId() const {
    return ids_ + "\\" + kInstance;
}

RegistryDevice& RegistryDevice::Text(const std::string& name, const std::string& text) {
    const std::wstring wide = WideOf(text) + L'\0';
    Store(key_, name, REG_SZ, wide.data(), BytesOf(wide));
    return *this;
}

RegistryDevice& RegistryDevice::Texts(const std::string& name,
                                      const std::vector<std::string>& texts) {
    const std::wstring list = ListOf(texts);
    Store(key_, name, REG_MULTI_SZ, list.data(), BytesOf(list));
    return *this;
}

RegistryDevice& RegistryDevice::Property(const DEVPROPKEY& key, const std::string& text) {
    const std::wstring wide = WideOf(text) + L'\0';
    StoreProperty(key, DEVPROP_TYPE_STRING, wide.data(), BytesOf(wide));
    return *this;
}

RegistryDevice& RegistryDevice::Property(const DEVPROPKEY& key,
                                         const std::vector<std::string>& texts) {
    const std::wstring list = ListOf(texts);
    StoreProperty(key, DEVPROP_TYPE_STRING_LIST, list.data(), BytesOf(list));
    return *this;
}

RegistryDevice& RegistryDevice::Property(const DEVPROPKEY& key, DWORD number) {
    StoreProperty(key, DEVPROP_TYPE_UINT32, &number, sizeof(number));
    return *this;
}

void RegistryDevice::Store(HKEY key, const std::string& name, DWORD type, const void* bytes,
                           std::size_t size) {
    const LSTATUS status =
        RegSetValueExW(key, name.empty() ? nullptr : WideOf(name).c_str(), 0, type,
                       static_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
    is_complete_ = is_complete_ && status == ERROR_SUCCESS;
}

void RegistryDevice::StoreProperty(const DEVPROPKEY& key, DEVPROPTYPE type, const void* bytes,
                                   std::size_t size) {
    const HKEY folder = Made(key_, FolderOf(key));
    Store(folder, "", kPropertyMark | type, bytes, size);
    if (folder != nullptr) RegCloseKey(folder);
}

}  // namespace test_support
