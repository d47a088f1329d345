// What a failed SSH step means to the user: one code, one sentence.
#pragma once

#include <string>

#include "common/result/tarsel_result.h"
#include "transport/ssh/ssh_problem.h"

namespace Vantix::remote {

/// What was being done when it failed; decides the code where only that is known.
enum class SshStep { kTalking, kUploading, kDownloading };

/// AUTHENTICATION_FAILED for a refused or missing login, code 54 when the password must be changed,
/// code 36 for a host key that is unknown or another one than before, CONNECTION_FAILED when nobody
/// answered or the connection was cut, TIMEOUT, code 47 interrupted, code 42 when the server lacks
/// what is needed, UPLOAD_FAILED and DOWNLOAD_FAILED for files. `target` is how messages name it.
[[nodiscard]] TarselResult ResultOfSshFailure(const transport::SshFailure& failure, SshStep step,
                                              const std::string& target);

}  // namespace Vantix::remote
