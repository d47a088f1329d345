// Reads what the test's machine told over its serial line: parts between "@@begin NAME" and
// "@@end NAME STATUS". What stands outside of parts (the kernel, the firmware) does not count.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace guest {

struct ConsolePart {
    std::string text;
    int status = -1;  ///< of the command; -1 for a part that was never closed
};

using ConsoleParts = std::map<std::string, ConsolePart, std::less<>>;

[[nodiscard]] ConsoleParts ReadParts(std::string_view console);

using Facts = std::map<std::string, std::string, std::less<>>;

/// The "key=value" lines of a text.
[[nodiscard]] Facts ReadFacts(std::string_view text);

/// The text with the values of these facts replaced by "${key}", the first key of several with the
/// same value; facts that are empty or were not told replace nothing.
[[nodiscard]] std::string WithMarks(std::string text, const Facts& facts,
                                    const std::vector<std::string>& keys);

}  // namespace guest
