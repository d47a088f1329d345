// Builds SMBIOS tables: AnSmbiosTable().System({"Example Maker", "Rack 1"}).Bytes().
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <string>
#include <vector>

namespace test_support {

/// One structure; fields are set by their offset, the header included.
class AnSmbiosStructure {
  public:
    AnSmbiosStructure(int type, std::size_t length) : bytes_(length, '\0') {
        Byte(0, type).Byte(1, static_cast<int>(length));
    }

    AnSmbiosStructure& Byte(std::size_t offset, int value) {
        bytes_.at(offset) = static_cast<char>(value);
        return *this;
    }
    AnSmbiosStructure& Word(std::size_t offset, int value) {
        return Byte(offset, value & 0xff).Byte(offset + 1, value >> 8 & 0xff);
    }
    AnSmbiosStructure& Raw(std::size_t offset, const std::string& bytes) {
        bytes_.replace(offset, bytes.size(), bytes);
        return *this;
    }
    /// An empty text is the number 0: not told.
    AnSmbiosStructure& Text(std::size_t offset, const std::string& text) {
        if (text.empty()) return Byte(offset, 0);
        strings_ += text + std::string(1, '\0');
        return Byte(offset, ++string_count_);
    }

    [[nodiscard]] std::string Bytes() const {
        return bytes_ + strings_ + std::string(strings_.empty() ? 2 : 1, '\0');
    }

  private:
    std::string bytes_;
    std::string strings_;
    int string_count_ = 0;
};

/// What the record of a Redfish host interface tells; addresses as raw bytes, 4 or 16.
struct HostInterfaceFields {
    std::string service_address;
    int service_port = 443;
    std::string host_address;
    std::string host_name;
    std::string device = std::string("\x02\x34\x12\x78\x56", 5);  ///< a USB device, first form
};

class AnSmbiosTable {
  public:
    /// Vendor, version.
    AnSmbiosTable& Bios(const std::string& vendor, const std::string& version) {
        return Add(AnSmbiosStructure(0, 0x18).Text(4, vendor).Text(5, version));
    }
    /// Manufacturer, product name, version, serial number; SKU and family.
    AnSmbiosTable& System(const std::vector<std::string>& texts, const std::string& sku = "",
                          const std::string& family = "") {
        AnSmbiosStructure system = Texts(1, 0x1b, texts);
        return Add(system.Text(0x19, sku).Text(0x1a, family));
    }
    /// Manufacturer, product, version, serial number.
    AnSmbiosTable& Baseboard(const std::vector<std::string>& texts) {
        return Add(Texts(2, 0x08, texts));
    }
    AnSmbiosTable& Chassis(const std::string& manufacturer, const std::string& serial_number) {
        return Add(AnSmbiosStructure(3, 0x15).Text(4, manufacturer).Text(7, serial_number));
    }
    /// `bus` and `place` (device * 8 + function) as in the record; 0xff for both: not told.
    AnSmbiosTable& Slot(const std::string& designation, int id, int segment, int bus, int place) {
        return Add(AnSmbiosStructure(9, 0x11)
                       .Text(4, designation)
                       .Byte(5, 0xa5)
                       .Byte(7, 4)
                       .Word(9, id)
                       .Word(0x0d, segment)
                       .Byte(0x0f, bus)
                       .Byte(0x10, place));
    }
    AnSmbiosTable& HostInterface(const HostInterfaceFields& fields) {
        const std::string record = RedfishRecord(fields);
        const std::size_t at = 6 + fields.device.size();
        AnSmbiosStructure interface(42, at + 3 + record.size());
        interface.Byte(4, 0x40).Byte(5, static_cast<int>(fields.device.size()));
        interface.Raw(6, fields.device).Byte(at, 1).Byte(at + 1, 4);
        return Add(interface.Byte(at + 2, static_cast<int>(record.size())).Raw(at + 3, record));
    }
    AnSmbiosTable& Add(const AnSmbiosStructure& structure) {
        bytes_ += structure.Bytes();
        return *this;
    }

    /// The table with its end.
    [[nodiscard]] std::string Bytes() const { return bytes_ + AnSmbiosStructure(127, 4).Bytes(); }

    /// The newer entry point of a table of that many bytes.
    static std::string EntryPoint(std::size_t table_bytes) {
        std::string bytes("_SM3_\0\x18\x03\x05\0\x01\0", 12);
        for (std::size_t i = 0; i < 4; ++i) {
            bytes += static_cast<char>(table_bytes >> 8 * i & 0xffU);
        }
        bytes.resize(0x18);
        const auto add = [](unsigned sum, char byte) {
            return sum + static_cast<std::uint8_t>(byte);
        };
        const unsigned sum = std::accumulate(bytes.begin(), bytes.end(), 0U, add);
        bytes.at(5) = static_cast<char>(256 - sum % 256);
        return bytes;
    }

  private:
    static AnSmbiosStructure Texts(int type, std::size_t length,
                                   const std::vector<std::string>& texts) {
        AnSmbiosStructure structure(type, length);
        for (std::size_t i = 0; i < texts.size(); ++i) structure.Text(4 + i, texts[i]);
        return structure;
    }
    static std::string RedfishRecord(const HostInterfaceFields& fields) {
        const auto format = [](const std::string& address) {
            return static_cast<char>(address.empty() ? 0 : address.size() == 4 ? 1 : 2);
        };
        std::string record(0x5b, '\0');
        record.at(0x11) = format(fields.host_address);
        record.replace(0x12, fields.host_address.size(), fields.host_address);
        record.at(0x33) = format(fields.service_address);
        record.replace(0x34, fields.service_address.size(), fields.service_address);
        record.at(0x54) = static_cast<char>(fields.service_port & 0xff);
        record.at(0x55) = static_cast<char>(fields.service_port >> 8);
        record.at(0x5a) = static_cast<char>(fields.host_name.size());
        return record + fields.host_name;
    }

    std::string bytes_;
};

}  // namespace test_support
