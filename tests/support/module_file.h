// A Linux kernel module as a file: an ELF file of 64 bits with names and a ".modinfo" section.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace test_support {

inline std::string LittleEndian(std::uint64_t number, std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) {
        text.push_back(static_cast<char>(number >> (8 * i) & 0xffU));
    }
    return text;
}

inline std::string SectionHeader(std::uint64_t name, std::uint64_t offset, std::uint64_t size) {
    return LittleEndian(name, 4) + LittleEndian(1, 4) + std::string(16, '\0') +
           LittleEndian(offset, 8) + LittleEndian(size, 8) + std::string(24, '\0');
}

/// `info` is the section: entries with a NUL behind each.
inline std::string ModuleFile(const std::string& info) {
    const std::string names("\0.text\0.modinfo\0.shstrtab\0", 26);
    const std::string code(100, '\x90');
    const std::size_t info_at = 64 + code.size();
    const std::size_t names_at = info_at + info.size();
    const std::size_t table_at = names_at + names.size();
    std::string header(
        "\x7f"
        "ELF\x02\x01\x01",
        7);
    header.resize(0x28, '\0');
    header += LittleEndian(table_at, 8) + LittleEndian(0, 4) + LittleEndian(64, 2) +
              LittleEndian(0, 4) + LittleEndian(64, 2) + LittleEndian(4, 2) + LittleEndian(3, 2);
    return header + code + info + names + SectionHeader(0, 0, 0) +
           SectionHeader(1, 64, code.size()) + SectionHeader(7, info_at, info.size()) +
           SectionHeader(16, names_at, names.size());
}

/// A module that says what it is.
inline std::string ModuleFileFor(const std::string& description) {
    std::string info = "license=GPL";
    info.push_back('\0');
    info += "description=" + description;
    info.push_back('\0');
    return ModuleFile(info);
}

}  // namespace test_support
