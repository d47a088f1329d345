// Builds recorded machines with PCI devices, and their product data.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/system_tree.h"

namespace test_support {

/// Attributes as the kernel writes them; an empty one has no file.
struct PciAttributes {
    std::string vendor = "0x1d0f";
    std::string device = "0x1001";
    std::string subsystem_vendor = "0x1d0f";
    std::string subsystem_device = "0x2001";
    std::string class_code = "0x020000";
};

class PciTree : public SystemTree {
  public:
    /// The device's folder: below the bus of `address`, or below `parent`.
    static std::string Folder(const std::string& address, const std::string& parent = "") {
        const std::string bus = address.substr(0, address.rfind(':'));
        return (parent.empty() ? "/sys/devices/pci" + bus : parent) + "/" + address;
    }

    /// The folder with its attributes, and the link to it. Returns the folder.
    std::string Device(const std::string& address, const PciAttributes& attributes = {},
                       const std::string& parent = "") {
        const std::string folder = Folder(address, parent);
        SystemTree::Folder(folder);
        Attribute(folder + "/vendor", attributes.vendor);
        Attribute(folder + "/device", attributes.device);
        Attribute(folder + "/subsystem_vendor", attributes.subsystem_vendor);
        Attribute(folder + "/subsystem_device", attributes.subsystem_device);
        Attribute(folder + "/class", attributes.class_code);
        Link("/sys/bus/pci/devices/" + address, "../../.." + folder.substr(4));
        return folder;
    }

    PciTree& Slot(const std::string& name, const std::string& address) {
        File("/sys/bus/pci/slots/" + name + "/address", address + "\n");
        return *this;
    }

    PciTree& IdFile() {
        File("/usr/share/misc/pci.ids",
             "# Invented names.\n"
             "1d0f  Example Networks\n"
             "\t1001  EX710 Controller\n"
             "\t\t1d0f 2001  Dual Port Adapter\n"
             "C 02  Network controller\n"
             "\t00  Ethernet controller\n");
        return *this;
    }

  private:
    void Attribute(const std::string& path, const std::string& value) {
        if (!value.empty()) File(path, value + "\n");
    }
};

/// AVpd().Identifier("EX710").Field("PN", "P1").Bytes(): with checksum and end.
class AVpd {
  public:
    AVpd& Identifier(const std::string& text) {
        head_ += Large('\x82', text);
        return *this;
    }
    AVpd& Field(const std::string& keyword, const std::string& value) {
        fields_ += keyword + static_cast<char>(value.size()) + value;
        return *this;
    }

    [[nodiscard]] std::string Bytes() const {
        std::string bytes = head_ + Large('\x90', fields_ + std::string("RV\x01\0", 4));
        std::uint8_t sum = 0;
        for (const char byte : bytes) {
            sum = static_cast<std::uint8_t>(sum + static_cast<std::uint8_t>(byte));
        }
        bytes.back() = static_cast<char>(256 - sum);
        return bytes + '\x78';
    }
    [[nodiscard]] std::string BytesWithoutChecksum() const {
        return head_ + Large('\x90', fields_) + '\x78';
    }

    static std::string Large(char tag, const std::string& content) {
        return std::string(1, tag) + static_cast<char>(content.size() & 0xffU) +
               static_cast<char>(content.size() >> 8U) + content;
    }

  private:
    std::string head_;
    std::string fields_;
};

}  // namespace test_support
