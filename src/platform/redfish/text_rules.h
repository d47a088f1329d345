// Small rules about texts of services: words in them, and texts that only pretend to say something.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace Vantix::redfish {

/// ASCII letters in lower case, all else as it is.
[[nodiscard]] std::string Lower(std::string_view text);

/// `part` must be in lower case.
[[nodiscard]] bool ContainsIgnoringCase(std::string_view text, std::string_view part);

/// The words of a text in lower case: runs of letters and runs of digits, cut also where a small
/// letter is followed by a capital ("SystemRomActive" has three, "PCIe" one).
[[nodiscard]] std::vector<std::string> Words(std::string_view text);

[[nodiscard]] bool HasAnyWord(const std::vector<std::string>& words,
                              std::initializer_list<std::string_view> wanted);

/// Texts that stand for "nobody filled this in": board makers' defaults ("To be filled by O.E.M."),
/// counting digits, one character repeated; also the empty text.
[[nodiscard]] bool IsPlaceholder(std::string_view text);

/// Texts that services put where no version is known ("N/A", "Not Present"); also the empty text.
/// "ff" and "0" are versions: some logic devices really count that way.
[[nodiscard]] bool IsNoVersion(std::string_view text);

/// The text, or empty when it is a placeholder.
[[nodiscard]] std::string Known(std::string text);

/// The first text that is not empty.
[[nodiscard]] std::string FirstOf(std::initializer_list<std::string> texts);

}  // namespace Vantix::redfish
