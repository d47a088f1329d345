// Connections over IPMI: to a BMC in the network, or to this machine's own.

#include <memory>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/connection/connection.h"
#include "platform/connection/inband_target.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/ipmi/ipmi_errors.h"
#include "platform/ipmi/ipmi_target.h"
#include "platform/ipmi/local_ipmi.h"
#include "platform/log/log.h"
#include "platform/log/log_settings.h"

namespace Vantix::VantixConnection {

namespace {

constexpr const char* kIpmiConnectionLog = "ipmi_connection";

// An IPMI log-in proves the password to whoever answers: not to a target whose certificate was not
// accepted. That HTTPS does not answer says nothing of IPMI.
bool MustNotTry(const TarselResult& before) {
    return before == VERIFY_CERTIFICATE_FAILED || before == PASSWORD_MUST_BE_CHANGED ||
           before == INTERRUPTED_BY_USER;
}

TarselResult CheckAccount(const ConnectOption& option) {
    if (!transport::IsUsableIpmiPassword(option.password)) {
        return TarselResult(IPMI_PASSWORD_TOO_LONG);
    }
    if (option.user.size() > transport::kLongestIpmiUser) {
        return TarselResult(IPMI_SESSION_FAILED,
                            "The account \"" + option.user + "\" cannot be used over IPMI with " +
                                ipmi::IpmiTargetText(option) +
                                ": user names of more than 16 bytes do not exist there; use "
                                "another account.");
    }
    return TarselResult(SUCCEED, "");
}

TarselResult MayStart(const ConnectOption& option) {
    if (option.run->IsCancelled()) return TarselResult(INTERRUPTED_BY_USER);
    if (option.target_address.empty()) return TarselResult(SUCCEED, "");
    const TarselResult before = option.run->LastFailure();
    if (!before.IsSucceed() && MustNotTry(before)) return before;
    if (!option.run->MayTryLogin()) return LoginBudgetSpent(ipmi::IpmiTargetText(option));
    return CheckAccount(option);
}

ConnectionInfo IpmiInfoOf(const ConnectOption& option) {
    ConnectionInfo info;
    info.connect_case = kConnectCaseIpmi;
    info.host = option.target_address;
    info.port = ipmi::IpmiPortOf(option);
    info.user = option.user;
    info.password = option.password;
    info.timeout_seconds = option.timeout_seconds;
    return info;
}

// Without an account the machine's own BMC is still open to it through the kernel's device.
ConnectOption TargetOf(const ConnectOption& wanted) {
    ConnectOption option = wanted;
    if (IsInband(option) && option.user.empty()) option.target_address.clear();
    return option;
}

}  // namespace

TarselResult FetchIPMIConnection(const ConnectOption& wanted, ConnectionInfo& connection) {
    connection = ConnectionInfo();
    const ConnectOption option = TargetOf(wanted);
    const TarselResult start = MayStart(option);
    if (!start.IsSucceed()) return start;
    AddLogSecret(option.password);
    auto channel = std::make_shared<ipmi::IpmiChannel>(option, ipmi::SystemIpmiRunner(),
                                                       transport::SystemClock());
    const transport::IpmiFailure failure = channel->Open();
    if (failure) {
        TarselResult result = ipmi::ResultOfIpmiFailure(failure, option);
        Log(2, kIpmiConnectionLog, __LINE__).Stream() << "IPMI connection failed: " << result;
        if (result == AUTHENTICATION_FAILED) option.run->RecordFailure(result);
        return result;
    }
    connection = IpmiInfoOf(option);
    connection.channel = std::move(channel);
    return TarselResult(SUCCEED, "");
}

TarselResult FetchIPMIConnectionList(const ConnectOption& option,
                                     std::vector<ConnectionInfo>& list) {
    list.clear();
    ConnectionInfo connection;
    TarselResult result = FetchIPMIConnection(option, connection);
    if (result.IsSucceed()) list.push_back(std::move(connection));
    return result;
}

}  // namespace Vantix::VantixConnection
