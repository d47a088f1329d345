// The built-in texts of the update-error codes: those whose bits 8 to 15 are not all zero.
//
// Deliberately not here: codes that carry a module number (result_code_registry.h).
#pragma once

#include <cstdint>
#include <span>

struct UpdateErrorText {
    std::int32_t code;
    const char* text;
};

/// All entries, in ascending order of their codes.
[[nodiscard]] std::span<const UpdateErrorText> UpdateErrorTexts();

/// The text of `code`, or null when the table does not have it.
[[nodiscard]] const char* FindUpdateErrorText(std::int32_t code);
