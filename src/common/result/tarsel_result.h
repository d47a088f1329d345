// The result that every fallible operation of the system returns: a code and an optional text.
//
// Deliberately not here: the code constants (result_codes.h) and the texts of the codes
// (result_code_registry.h, update_error_table.h).
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "common/export.h"

/// A result code (module number in bits 16 to 31, code within the module in bits 0 to 15) and a
/// text particular to this occurrence. An empty text means that the text registered for the code
/// applies; readers take it through GetResultMessage.
class TARSEL_EXPORT TarselResult {
  public:
    /// Wraps an integer that a library returned; `message` becomes GetResultMessage(code).
    TarselResult(int code);  // NOLINT(google-explicit-constructor): codes turn into results

    /// Takes both as given; an empty message stays empty.
    TarselResult(int code, const std::string& message);

    /// Compare the low 16 bits only: the module number is ignored on purpose.
    bool operator==(int other) const;
    bool operator!=(int other) const;

    /// True when the low 16 bits of the code are zero.
    [[nodiscard]] bool IsSucceed() const;

    std::int32_t code;
    std::string message;
};

/// Writes the low 16 bits of the code in decimal, a blank, and the message or, when that is empty,
/// the code's registered text. Format flags and locale of the stream do not change the number.
TARSEL_EXPORT std::ostream& operator<<(std::ostream& out, const TarselResult& result);

/// The text of a code: from the update-error table when bits 8 to 15 are set, otherwise from the
/// registry. Never fails: unknown codes read "Unknown error" and "Unknow error" (kept spelling).
TARSEL_EXPORT std::string GetResultMessage(int code);
