// Offsets of ELF-64: System V ABI, "Object Files", and its header <elf.h>.

#include "transport/modinfo/module_object.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr std::size_t kHeaderSize = 64;
constexpr std::size_t kSectionHeaderSize = 64;
constexpr std::uint64_t kMostSections = 4096;
constexpr std::uint64_t kMostNameBytes = 256 * 1024;
constexpr std::uint64_t kMostInfoBytes = 64 * 1024;

struct Section {
    std::uint64_t name = 0;  ///< offset in the section of names
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
};

// Little-endian; zero where the bytes end too early.
std::uint64_t Number(std::string_view bytes, std::size_t at, std::size_t length) {
    if (at > bytes.size() || bytes.size() - at < length) return 0;
    std::uint64_t number = 0;
    for (std::size_t i = length; i > 0; --i) {
        number = number << 8U | static_cast<unsigned char>(bytes[at + i - 1]);
    }
    return number;
}

bool IsLittleElf64(std::string_view header) {
    constexpr std::string_view kStart(
        "\x7f"
        "ELF\x02\x01",
        6);
    return header.size() == kHeaderSize && header.substr(0, kStart.size()) == kStart;
}

class ElfFile {
  public:
    explicit ElfFile(const ByteSource& read) : read_(read), header_(read(0, kHeaderSize)) {}

    [[nodiscard]] std::string SectionBytes(std::string_view name, std::uint64_t most) const {
        if (!IsLittleElf64(header_)) return {};
        const std::uint64_t count = Number(header_, 0x3c, 2);
        if (Number(header_, 0x3a, 2) != kSectionHeaderSize || count > kMostSections) return {};
        const std::string table = read_(Number(header_, 0x28, 8), count * kSectionHeaderSize);
        const auto names_section = SectionAt(table, Number(header_, 0x3e, 2));
        if (!names_section) return {};
        const std::string names = Bytes(*names_section, kMostNameBytes);
        for (std::uint64_t i = 0; i < count; ++i) {
            const auto section = SectionAt(table, i);
            if (section && NameAt(names, section->name) == name) return Bytes(*section, most);
        }
        return {};
    }

  private:
    [[nodiscard]] static std::optional<Section> SectionAt(std::string_view table,
                                                          std::uint64_t index) {
        const std::uint64_t at = index * kSectionHeaderSize;
        if (at >= table.size() || table.size() - at < kSectionHeaderSize) return std::nullopt;
        const std::string_view bytes = table.substr(at, kSectionHeaderSize);
        return Section{Number(bytes, 0, 4), Number(bytes, 0x18, 8), Number(bytes, 0x20, 8)};
    }

    [[nodiscard]] static std::string_view NameAt(std::string_view names, std::uint64_t at) {
        if (at >= names.size()) return {};
        const std::string_view rest = names.substr(at);
        return rest.substr(0, rest.find('\0'));
    }

    [[nodiscard]] std::string Bytes(const Section& section, std::uint64_t most) const {
        return read_(section.offset, static_cast<std::size_t>(std::min(section.size, most)));
    }

    const ByteSource& read_;
    std::string header_;
};

}  // namespace

std::string ReadModuleDescription(const ByteSource& read) {
    constexpr std::string_view kKey = "description=";
    const std::string info = ElfFile(read).SectionBytes(".modinfo", kMostInfoBytes);
    std::string_view rest = info;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        const std::string_view entry = rest.substr(0, end);
        if (entry.substr(0, kKey.size()) == kKey) {
            return CleanStart(entry.substr(kKey.size()), 200);
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return {};
}

}  // namespace Vantix::transport
