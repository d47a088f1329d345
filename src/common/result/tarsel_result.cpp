#include "common/result/tarsel_result.h"

#include <ostream>

#include "common/result/result_code_registry.h"
#include "common/result/result_codes.h"
#include "common/result/update_error_table.h"

namespace {

std::uint32_t LowHalf(int code) {
    return static_cast<std::uint32_t>(code) & 0xFFFFU;
}

bool BelongsToUpdateErrorTable(int code) {
    return (code & 0xFF00) != 0;
}

}  // namespace

TarselResult::TarselResult(int result_code)
    : code(result_code), message(GetResultMessage(result_code)) {}

TarselResult::TarselResult(int result_code, const std::string& result_message)
    : code(result_code), message(result_message) {}

bool TarselResult::operator==(int other) const {
    return LowHalf(code) == LowHalf(other);
}

bool TarselResult::operator!=(int other) const {
    return !(*this == other);
}

bool TarselResult::IsSucceed() const {
    return LowHalf(code) == LowHalf(SUCCEED);
}

std::ostream& operator<<(std::ostream& out, const TarselResult& result) {
    // A text, not a number: the stream's base, width and grouping must not change it.
    const std::string number = std::to_string(LowHalf(result.code));
    return out << number + ' ' +
                      (result.message.empty() ? GetResultMessage(result.code) : result.message);
}

std::string GetResultMessage(int code) {
    if (BelongsToUpdateErrorTable(code)) {
        const char* text = FindUpdateErrorText(code);
        return text != nullptr ? text : "Unknown error";
    }
    return ResultCodeRegistry::GetRegisteredMessage(code, code >> 16);
}
