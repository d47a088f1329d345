// Makes a device appear to programs in a Wine prefix, which takes its devices from the registry.
// Never on a real Windows: there the registry's device tree belongs to the system.
#pragma once

#include <windows.h>

#include <devpropdef.h>

#include <string>
#include <vector>

namespace test_support {

[[nodiscard]] bool IsWine();

/// There until the object dies. Texts are UTF-8.
class RegistryDevice {
  public:
    /// `ids`: "PCI\VEN_FA4E&DEV_0001", one that no other test uses; other tests see the device,
    /// too.
    RegistryDevice(const std::string& ids, const std::string& description);
    ~RegistryDevice();
    RegistryDevice(const RegistryDevice&) = delete;
    RegistryDevice& operator=(const RegistryDevice&) = delete;

    /// As the system spells it.
    [[nodiscard]] std::string InstanceId() const;

    /// False when the registry refused something.
    [[nodiscard]] bool IsComplete() const { return is_complete_; }

    RegistryDevice& Text(const std::string& name, const std::string& text);
    RegistryDevice& Texts(const std::string& name, const std::vector<std::string>& texts);
    RegistryDevice& Property(const DEVPROPKEY& key, const std::string& text);
    RegistryDevice& Property(const DEVPROPKEY& key, const std::vector<std::string>& texts);
    RegistryDevice& Property(const DEVPROPKEY& key, DWORD number);

  private:
    void Store(HKEY key, const std::string& name, DWORD type, const void* bytes, std::size_t size);
    void StoreProperty(const DEVPROPKEY& key, DEVPROPTYPE type, const void* bytes,
                       std::size_t size);

    std::string ids_;
    std::string path_;
    HKEY key_ = nullptr;
    bool is_complete_ = true;
};

}  // namespace test_support
