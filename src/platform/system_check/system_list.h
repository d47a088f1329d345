// One list of machine types, kept in a text file beside the library.
#pragma once

#include <istream>
#include <set>
#include <string>

namespace Vantix {

/// Lines longer than this are no machine types and are skipped.
inline constexpr std::size_t kLongestSystemListLine = 256;
/// Reading stops after this many bytes: a list is a few lines, anything else is a mistake.
inline constexpr std::size_t kLargestSystemList = 4 * 1024 * 1024;

/// The machine types of a list text, ASCII letters in upper case. Any bytes are tolerated.
std::set<std::string> ReadSystemList(std::istream& text);

/// The file is read on the first question; a missing or unreadable one is an empty list.
class SystemList {
  public:
    explicit SystemList(std::string file);

    /// True when the list holds the whole machine type, ASCII letter case ignored, blanks around it
    /// trimmed. Never for an empty one.
    bool Contains(const std::string& machine_type);

  private:
    const std::string file_;
    bool is_read_ = false;
    std::set<std::string> machine_types_;
};

}  // namespace Vantix
