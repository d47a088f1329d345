#include "platform/remote_command/scan_file_cleaning.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "common/files/file_path.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::remote {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestReference = 64;
// A package has two dozen marks; a tree node costs half a kilobyte, and each row of the tables is
// as wide as its widest cell.
constexpr std::size_t kMostMarks = 500'000;
constexpr std::size_t kLongestText = 4096;
constexpr const char* kEscapedAmpersand = "&amp;";

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

// Where the digits of a character reference at the front of `text` end; 0 when there is no "&#".
std::size_t DigitsEnd(std::string_view text) {
    constexpr std::string_view kDigits = "xX0123456789abcdefABCDEF";
    if (!text.starts_with("&#")) return 0;
    return std::min(text.find_first_not_of(kDigits, 2), text.size());
}

// The length of the character reference that `text` begins with; 0 when it begins with none.
std::size_t ReferenceLength(std::string_view text, std::size_t digits_end) {
    const bool is_closed = digits_end > 0 && digits_end < text.size() && text[digits_end] == ';';
    return is_closed && digits_end < kLongestReference ? digits_end + 1 : 0;
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

// Readers take references of any length: one that is not looked at must not stay one.
bool IsEndlessReference(std::string_view text, std::size_t digits_end) {
    return digits_end > 0 && (digits_end >= kLongestReference || digits_end == text.size());
}

}  // namespace

std::string CleanScanXml(std::string_view xml) {
    std::string clean;
    clean.reserve(xml.size());
    while (!xml.empty()) {
        const std::size_t digits_end = DigitsEnd(xml);
        std::size_t length = ReferenceLength(xml, digits_end);
        if (length > 0) {
            clean += IsControlReference(xml.substr(0, length)) ? " " : xml.substr(0, length);
        } else if (IsEndlessReference(xml, digits_end)) {
            clean += kEscapedAmpersand;
            length = 1;
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

bool IsReasonableScanXml(std::string_view xml) {
    std::size_t marks = 0;
    std::size_t text = 0;
    for (const char letter : xml) {
        text = letter == '<' || letter == '>' ? 0 : text + 1;
        marks += letter == '<' || letter == '=' ? 1 : 0;
        if (text > kLongestText || marks > kMostMarks) return false;
    }
    return true;
}

namespace {

std::optional<std::string> ReadWhole(const std::string& path) {
    std::ifstream stream(FilePath(path), std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream.is_open() || stream.bad()) return std::nullopt;
    return bytes;
}

bool Replace(const std::string& path, const std::string& content) {
    const fs::path aside = FilePath(path + ".clean");
    std::error_code error;
    fs::remove(aside, error);  // a link of that name is not followed
    std::ofstream file(aside, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    error.clear();
    if (!file.fail()) fs::rename(aside, FilePath(path), error);
    if (!file.fail() && !error) return true;
    fs::remove(aside, error);
    return false;
}

bool CleanBytes(const std::string& path, const std::string& bytes) {
    const std::string clean = CleanScanXml(bytes);
    return clean == bytes || Replace(path, clean);
}

}  // namespace

ScanFileState CleanScanFile(const std::string& path) {
    const std::optional<std::string> xml = ReadWhole(path);
    if (!xml) return ScanFileState::kNotWritten;
    if (!IsReasonableScanXml(*xml)) return ScanFileState::kExcessive;
    return CleanBytes(path, *xml) ? ScanFileState::kClean : ScanFileState::kNotWritten;
}

bool CleanLogFile(const std::string& path) {
    const std::optional<std::string> text = ReadWhole(path);
    return text && CleanBytes(path, *text);
}

}  // namespace Vantix::remote
