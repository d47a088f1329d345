// The summary of a run for other programs: common_result.xml.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/connection/run_context.h"

namespace tarsel {

struct CommonResult {
    std::int32_t code = 0;  ///< the whole 32-bit result code
    std::string message;
    int exit_code = 0;
    std::string target;
    std::string version;  ///< of the tool
    std::chrono::system_clock::time_point started;
    std::chrono::system_clock::time_point finished;
    std::vector<Vantix::VantixConnection::SourceStatus> sources;
};

/// The summary as XML in UTF-8, whatever bytes the texts hold: root RESULT with CODE (decimal) and
/// MESSAGE first, then EXITCODE, TARGET, TOOLVERSION, STARTED and FINISHED (UTC, ISO 8601) and
/// SOURCES with one SOURCE (NAME, STATE, READ, FAILED, DETAIL) each.
std::string CommonResultXml(const CommonResult& result);

}  // namespace tarsel
