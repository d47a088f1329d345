#include "platform/ipmi/bootstrap_account.h"

#include <vector>

#include "common/result/result_codes.h"
#include "platform/ipmi/ipmi_sessions.h"
#include "platform/ipmi/ipmi_target.h"
#include "platform/ipmi/local_ipmi.h"
#include "platform/log/log.h"
#include "platform/log/log_settings.h"
#include "transport/ipmi/bootstrap_credentials.h"
#include "transport/ipmi/hex_text.h"

namespace Vantix::ipmi {

using transport::IpmiFailure;
using transport::IpmiProblem;
using transport::RawAnswer;
using VantixConnection::BmcAccount;
using VantixConnection::ConnectOption;

namespace {

constexpr const char* kBootstrapAccountLog = "bootstrap_account";

TarselResult Refused(const std::string& why, const std::string& advice) {
    const TarselResult result(
        KCS_CONNECT_FAILED,
        "No account for this machine's BMC could be got from the BMC itself: " + why + "; " +
            advice + ", or give user name and password with --user.");
    Log(2, kBootstrapAccountLog, __LINE__).Stream() << result;
    return result;
}

TarselResult ResultOf(const IpmiFailure& failure) {
    switch (failure.problem) {
        case IpmiProblem::kCancelled:
            return TarselResult(INTERRUPTED_BY_USER);
        case IpmiProblem::kNoDevice:
            return Refused("the IPMI device cannot be used (" + failure.text + ")",
                           LocalIpmiAdvice());
        case IpmiProblem::kToolMissing:
        case IpmiProblem::kToolBroken:
            return Refused("the program ipmitool does not work (" + failure.text + ")",
                           "install the package ipmitool");
        default:
            return Refused("it does not answer over the IPMI device (" + failure.text + ")",
                           "try again later");
    }
}

TarselResult ResultOf(const RawAnswer& answer) {
    if (answer.completion == transport::kBootstrappingDisabled) {
        return Refused("giving accounts is switched off",
                       "enable credential bootstrapping of the BMC's host interface");
    }
    if (answer.completion == transport::kCompletionOk || answer.completion < 0) {
        return Refused("its answer is not usable", "try again later");
    }
    const auto code = static_cast<std::uint8_t>(answer.completion);
    return Refused("it refuses (completion code 0x" + transport::HexByte(code) + ")",
                   "check that it has a Redfish host interface");
}

// An address in the network plays no part: it is the machine's own controller that is asked.
ConnectOption LocalOption(const ConnectOption& option) {
    ConnectOption local = option;
    local.target_address.clear();
    return local;
}

}  // namespace

TarselResult GetBootstrapAccount(const ConnectOption& option, transport::CommandRunner& runner,
                                 transport::Clock& clock, BmcAccount& account,
                                 const std::string& root_folder) {
    account = {};
    if (option.run->IsCancelled()) return TarselResult(INTERRUPTED_BY_USER);
    if (!HasLocalIpmiDevice(option, root_folder)) {
        return ResultOf(IpmiFailure{IpmiProblem::kNoDevice, "there is none"});
    }
    option.run->Activity("asking the BMC for an account");
    IpmiSessions sessions(LocalOption(option), {}, runner, clock);
    const std::vector<transport::RawRequest> requests = {transport::BootstrapCredentialsRequest()};
    const SessionResult session = sessions.Run({transport::RawLine(requests.front())});
    if (session.texts.empty()) return ResultOf(session.failure);
    const RawAnswer answer =
        transport::ReadRawAnswers(requests, session.texts, session.error_output).front();
    const auto credentials = transport::ParseBootstrapCredentials(answer);
    if (!credentials) return ResultOf(answer);
    AddLogSecret(credentials->password);
    account = {credentials->user, credentials->password};
    return TarselResult(SUCCEED, "");
}

}  // namespace Vantix::ipmi
