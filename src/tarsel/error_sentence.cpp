#include "tarsel/error_sentence.h"

#include <algorithm>

#include "platform/log/log_settings.h"
#include "tarsel/exit_codes.h"

namespace tarsel {
namespace {

// Messages that name it are whole sentences, as are those that name the target.
constexpr const char* kOwnBmc = "this machine's BMC";

std::string OneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(),
        [](char letter) { return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F; },
        ' ');
    const std::size_t last = text.find_last_not_of(" .");
    return last == std::string::npos ? std::string() : text.substr(0, last + 1);
}

std::string WhatToDo(int exit_code) {
    switch (exit_code) {
        case kExitUsage:
            return "check the arguments";
        case kExitAuthentication:
            return "check user name and password before you try again";
        case kExitUnreachable:
            return "check the address and that the target is up";
        case kExitTls:
            return "give its certificate with --ca-file or its fingerprint with --pin";
        case kExitUnsupported:
            return "this target cannot be scanned this way";
        default:
            return "see tarsel.log for more";
    }
}

}  // namespace

std::string ErrorSentence(const TarselResult& result, const std::string& target,
                          const std::string& host, int exit_code) {
    const std::string known =
        result.message.empty() ? GetResultMessage(result.code) : result.message;
    const std::string message = OneLine(Vantix::MaskSecrets(known));
    if (!host.empty() && message.find(host) != std::string::npos) return message + ".";
    if (message.find(kOwnBmc) != std::string::npos) return message + ".";
    const std::string code = std::to_string(result.code);
    return "The scan of " + target + " failed: " + message + " (code " + code + "); " +
           WhatToDo(exit_code) + ".";
}

}  // namespace tarsel
