#include "transport/ssh/scp_line.h"

#include <charconv>
#include <string_view>

#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr unsigned kPermissions = 07777;

}  // namespace

ScpLine ParseScpLine(const std::string& line) {
    ScpLine parsed;
    if (line.empty()) return parsed;
    if (line.front() == '\1' || line.front() == '\2') {
        parsed.kind = ScpLine::Kind::kError;
        parsed.words = CleanStart(std::string_view(line).substr(1), 120);
        return parsed;
    }
    const std::size_t mode_end = line.find(' ');
    if (line.front() != 'C' || mode_end == std::string::npos) return parsed;
    const char* const first = line.data() + mode_end + 1;
    const char* const last = line.data() + line.size();
    const auto [end, error] = std::from_chars(first, last, parsed.size);
    if (error == std::errc() && end != last && *end == ' ') parsed.kind = ScpLine::Kind::kFile;
    return parsed;
}

std::string OctalMode(unsigned mode) {
    std::string digits;
    for (unsigned rest = mode & kPermissions, i = 0; i < 4; ++i, rest /= 8) {
        digits.insert(digits.begin(), static_cast<char>('0' + rest % 8));
    }
    return digits;
}

std::string ScpFileLine(unsigned mode, std::uint64_t size, const std::string& path) {
    std::string name = path.substr(path.rfind('/') + 1);
    for (char& letter : name) {
        if (letter == '\n') letter = '_';
    }
    return "C" + OctalMode(mode) + " " + std::to_string(size) + " " + name + "\n";
}

}  // namespace Vantix::transport
