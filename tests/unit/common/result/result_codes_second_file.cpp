#include "unit/common/result/result_codes_second_file.h"

#include "common/result/result_codes.h"
#include "common/result/tarsel_result.h"

namespace {

// Runs before main: the constants above it must be registered by then.
const std::string text_at_start = GetResultMessage(UPDATE_IN_PROGRESS);

}  // namespace

CodesSeenElsewhere ReadCodesInSecondFile() {
    return {UPDATE_IN_PROGRESS, SMART_DATA_UNAVAILABLE, text_at_start};
}
