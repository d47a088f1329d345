#include "platform/system_check/system_list.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <utility>

#include "common/files/file_path.h"

namespace Vantix {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Folding is ASCII only: machine types are, and the result must not follow the locale.
char Upper(char letter) {
    return letter >= 'a' && letter <= 'z' ? char(letter - 'a' + 'A') : letter;
}

std::string TrimmedUpper(std::string_view text) {
    constexpr std::string_view kBlanks(" \t\r\v\f\0", 6);
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    std::string trimmed(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
    std::transform(trimmed.begin(), trimmed.end(), trimmed.begin(), Upper);
    return trimmed;
}

// Gathers the bytes of one line without ever holding more than a machine type can need.
class LineCollector {
  public:
    explicit LineCollector(std::set<std::string>& machine_types) : machine_types_(machine_types) {}

    void Add(char letter) {
        if (letter == '\n') {
            Finish();
        } else if (line_.size() <= kLongestSystemListLine) {
            line_ += letter;
        }
    }

    void Finish() {
        std::string_view line = line_;
        if (is_first_ && line.starts_with(kByteOrderMark)) {
            line.remove_prefix(kByteOrderMark.size());
        }
        is_first_ = false;
        const std::size_t comment = line.find('#');
        const bool is_too_long =
            comment == std::string_view::npos && line.size() > kLongestSystemListLine;
        std::string machine_type = TrimmedUpper(line.substr(0, comment));
        if (!machine_type.empty() && !is_too_long) machine_types_.insert(std::move(machine_type));
        line_.clear();
    }

  private:
    std::set<std::string>& machine_types_;
    std::string line_;
    bool is_first_ = true;
};

}  // namespace

std::set<std::string> ReadSystemList(std::istream& text) {
    std::set<std::string> machine_types;
    LineCollector collector(machine_types);
    std::size_t bytes = 0;
    char letter = 0;
    while (bytes < kLargestSystemList && text.get(letter)) {
        collector.Add(letter);
        ++bytes;
    }
    if (bytes < kLargestSystemList) collector.Finish();
    return machine_types;
}

SystemList::SystemList(std::string file) : file_(std::move(file)) {}

bool SystemList::Contains(const std::string& machine_type) {
    if (!is_read_) {
        std::ifstream text(FilePath(file_), std::ios::binary);
        machine_types_ = ReadSystemList(text);
        is_read_ = true;
    }
    const std::string wanted = TrimmedUpper(machine_type);
    return !wanted.empty() && machine_types_.count(wanted) != 0;
}

}  // namespace Vantix
