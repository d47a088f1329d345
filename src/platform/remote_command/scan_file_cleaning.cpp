#include "platform/remote_command/scan_file_cleaning.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "transport/text/text_cleaning.h"

namespace Vantix::remote {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestReference = 64;

bool IsControl(std::uint32_t character) {
    const bool is_layout = character == '\t' || character == '\n' || character == '\r';
    return (character < 0x20 && !is_layout) || (character >= 0x7F && character <= 0x9F);
}

std::uint32_t CharacterIn(std::string_view sequence) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(sequence[at]); };
    if (sequence.size() == 1) return byte(0);
    // Control characters stand in one or two bytes; others need not be told apart.
    return sequence.size() == 2 ? ((byte(0) & 0x1FU) << 6U) | (byte(1) & 0x3FU) : 0xFFFFU;
}

// The length of the character reference that `text` begins with; 0 when it begins with none.
std::size_t ReferenceLength(std::string_view text) {
    if (!text.starts_with("&#")) return 0;
    const std::size_t end = text.substr(0, kLongestReference).find(';');
    return end == std::string_view::npos ? 0 : end + 1;
}

// Numbers that no character has are as little wanted: some readers let them overflow into one.
bool IsControlReference(std::string_view reference) {
    std::string_view digits = reference.substr(2, reference.size() - 3);
    const bool is_hexadecimal = digits.starts_with('x') || digits.starts_with('X');
    if (is_hexadecimal) digits.remove_prefix(1);
    std::uint32_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, value, is_hexadecimal ? 16 : 10);
    return read.ec != std::errc() || read.ptr != end || value > 0x10FFFF || IsControl(value);
}

}  // namespace

std::string CleanScanXml(std::string_view xml) {
    std::string clean;
    clean.reserve(xml.size());
    while (!xml.empty()) {
        std::size_t length = ReferenceLength(xml);
        if (length > 0) {
            clean += IsControlReference(xml.substr(0, length)) ? " " : xml.substr(0, length);
        } else {
            length = transport::Utf8SequenceLength(xml, 0);
            const std::string_view sequence = xml.substr(0, length);
            if (length == 0) {
                clean += transport::kReplacementCharacter;
            } else {
                clean += IsControl(CharacterIn(sequence)) ? " " : sequence;
            }
        }
        xml.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return clean;
}

bool CleanScanFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    const std::string xml{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad()) return false;
    const std::string clean = CleanScanXml(xml);
    if (clean == xml) return true;
    const std::string aside = path + ".clean";
    std::ofstream file(aside, std::ios::binary | std::ios::trunc);
    file << clean;
    file.close();
    std::error_code error;
    if (!file.fail()) fs::rename(aside, path, error);
    if (!file.fail() && !error) return true;
    fs::remove(aside, error);
    return false;
}

}  // namespace Vantix::remote
