// A failed scan in one sentence: what failed, on which target, what to do.
#pragma once

#include <string>

#include "common/result/tarsel_result.h"

namespace tarsel {

/// `target` as the user knows it, `exit_code` of the run. Never more than one line, secrets masked.
/// A message that names the host already is taken as the whole sentence.
std::string ErrorSentence(const TarselResult& result, const std::string& target,
                          const std::string& host, int exit_code);

}  // namespace tarsel
