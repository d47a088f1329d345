// The shape of what arcconf prints: titles between dashed lines, and "key : value" lines below
// them. Private to this transport.
//
// The column of the colon differs from command to command and from release to release, and the same
// key comes again for every device, so a line means something only together with its titles.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Vantix::transport {

struct ArcconfLine {
    std::string section;     ///< the last title that is not indented, in lower case
    std::string subsection;  ///< the last indented title since then, in lower case
    std::string key;         ///< the whole line where there is no value
    std::string value;       ///< clean; empty also for "Not Available" and its kin
    bool has_value = false;
};

/// Goes through an output line by line; blank and dashed lines are passed over.
class ArcconfLines {
  public:
    explicit ArcconfLines(std::string_view output) : rest_(output) {}

    /// Nothing at the end.
    [[nodiscard]] std::optional<ArcconfLine> Next();
    /// The next "Device #3" begins without subsection.
    void LeaveSubsection() { subsection_.clear(); }

  private:
    enum class Title { kNone, kOpen, kRead };
    void TakeTitle(std::string_view raw, const ArcconfLine& line);

    std::string_view rest_;
    std::string section_;
    std::string subsection_;
    Title title_ = Title::kNone;
};

/// The decimal number that `text` begins with; nothing when there is none.
[[nodiscard]] std::optional<int> LeadingNumber(std::string_view text);

/// The number behind the first `word` ("slot ") of `text`, ignoring case.
[[nodiscard]] std::optional<int> NumberBehind(std::string_view text, std::string_view word);

}  // namespace Vantix::transport
