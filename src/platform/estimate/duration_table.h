// How long earlier scans took: a small table that lives in a text file.
//
// Deliberately forgiving: the file is a convenience, never a reason for a scan to fail.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace Vantix {

/// Lines are "<seconds> <key>"; the oldest entry stands first.
class DurationTable {
  public:
    /// Older entries make room for newer ones beyond this number.
    static constexpr std::size_t kMostEntries = 200;
    /// Durations above a day are taken for damage, not for scans.
    static constexpr int kLongestSeconds = 24 * 60 * 60;

    /// Lines that are none of ours are skipped.
    static DurationTable Read(std::istream& text);
    void Write(std::ostream& text) const;

    [[nodiscard]] std::optional<int> Find(const std::string& key) const;
    /// Replaces the entry of that key and makes it the newest. Control bytes in the key count as
    /// blanks. Empty keys and durations outside 1 to kLongestSeconds are ignored.
    void Remember(const std::string& key, int seconds);
    [[nodiscard]] std::size_t Size() const { return entries_.size(); }

  private:
    std::vector<std::pair<std::string, int>> entries_;
};

}  // namespace Vantix
