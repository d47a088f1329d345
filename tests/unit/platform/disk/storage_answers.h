// Builds what Windows' storage drivers answer to property queries, as little-endian bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace disk_test {

inline std::string LittleEndian(std::uint32_t number, std::size_t bytes = 4) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xffU);
    return text;
}

/// STORAGE_DEVICE_DESCRIPTOR.
struct ADevice {
    std::string vendor, model, revision, serial;
    int bus = 0;
    int device_type = 0;

    [[nodiscard]] std::string Bytes() const {
        constexpr std::size_t kFixedPart = 36;
        std::string offsets, texts;
        for (const std::string* text : {&vendor, &model, &revision, &serial}) {
            const std::size_t at = kFixedPart + texts.size();
            offsets += LittleEndian(text->empty() ? 0 : static_cast<std::uint32_t>(at));
            if (!text->empty()) texts += *text + '\0';
        }
        const auto length = static_cast<std::uint32_t>(kFixedPart + texts.size());
        return LittleEndian(40) + LittleEndian(length) + static_cast<char>(device_type) +
               std::string(3, '\0') + offsets + LittleEndian(static_cast<std::uint32_t>(bus)) +
               LittleEndian(static_cast<std::uint32_t>(texts.size())) + texts;
    }
};

/// STORAGE_ADAPTER_DESCRIPTOR.
inline std::string AdapterBytes(int bus) {
    return LittleEndian(32) + LittleEndian(32) + std::string(16, '\0') + static_cast<char>(bus) +
           std::string(7, '\0');
}

/// STORAGE_IDENTIFIER. `kind` 3 is an NAA name, `association` 0 that of the unit.
inline std::string Identifier(std::uint32_t kind, std::uint32_t association,
                              const std::string& name) {
    const auto length = static_cast<std::uint32_t>(name.size());
    return LittleEndian(1) + LittleEndian(kind) + LittleEndian(length, 2) +
           LittleEndian(length + 16, 2) + LittleEndian(association) + name;
}

/// STORAGE_DEVICE_ID_DESCRIPTOR.
inline std::string NamesBytes(std::uint32_t count, const std::string& identifiers) {
    return LittleEndian(12) + LittleEndian(static_cast<std::uint32_t>(12 + identifiers.size())) +
           LittleEndian(count) + identifiers;
}

/// STORAGE_PROTOCOL_DATA_DESCRIPTOR with `data` in it.
inline std::string ProtocolBytes(const std::string& data) {
    return LittleEndian(48) + LittleEndian(48) + LittleEndian(3) + LittleEndian(1) +
           LittleEndian(1) + LittleEndian(0) + LittleEndian(40) +
           LittleEndian(static_cast<std::uint32_t>(data.size())) + std::string(16, '\0') + data;
}

}  // namespace disk_test
