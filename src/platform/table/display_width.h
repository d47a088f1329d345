// How much room a text takes on a terminal.
//
// Deliberately not here: a full Unicode database. The common wide (East Asian, emoji) and
// combining ranges suffice to keep columns aligned.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Terminal columns of UTF-8 text: 2 for wide characters, 0 for combining and invisible ones, 1 for
/// all others and for every byte that is not valid UTF-8.
[[nodiscard]] std::size_t DisplayWidth(std::string_view text);

/// The text with every control character (both ranges and DEL) replaced by one blank, so that it
/// stays on its line.
[[nodiscard]] std::string WithoutControls(std::string_view text);
