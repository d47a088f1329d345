#include "platform/cim/service_probe.h"

#include <algorithm>
#include <utility>

#include "common/result/result_codes.h"
#include "platform/cim/cim_target.h"
#include "platform/cim/hypervisor_reader.h"
#include "platform/log/log.h"

namespace Vantix::cim {

using transport::CurlSettings;
using transport::CurlTransport;
using transport::HttpErrorKind;
using transport::HttpMethod;
using transport::HttpOutcome;
using transport::HttpRequest;
using transport::Milliseconds;
using VantixConnection::ConnectOption;

namespace {

constexpr const char* kServiceProbeLog = "cim_service_probe";
constexpr int kPlainCimPort = 5988;
// A question aside must not cost what the scan itself may.
constexpr Milliseconds kLongestProbe{5000};

// The one request that the host's web service answers without a login (vSphere web services API).
constexpr const char* kContentRequest =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
    "<soapenv:Envelope xmlns:soapenv=\"http://schemas.xmlsoap.org/soap/envelope/\">"
    "<soapenv:Body><RetrieveServiceContent xmlns=\"urn:vim25\">"
    "<_this type=\"ServiceInstance\">ServiceInstance</_this>"
    "</RetrieveServiceContent></soapenv:Body></soapenv:Envelope>";

HttpOutcome Ask(const ConnectOption& option, int port, bool use_tls, HttpRequest request) {
    CurlSettings settings = CurlSettingsFor(option, port, use_tls);
    settings.connect_timeout = std::min(settings.connect_timeout, kLongestProbe);
    request.timeout = kLongestProbe;
    CurlTransport transport(std::move(settings));
    HttpOutcome result;
    result.error = {HttpErrorKind::kCancelled, "interrupted"};
    transport.Submit(std::move(request),
                     [&result](HttpOutcome&& outcome) { result = std::move(outcome); });
    while (!option.run->IsCancelled() && transport.Step(Milliseconds(100))) {
    }
    Log(3, kServiceProbeLog, __LINE__).Stream()
        << "Asked port " << port << ": " << (result.Answered() ? "it answers" : result.error.text);
    return result;
}

// Any sign of life counts, also a handshake that fails: somebody listens.
bool IsListening(const HttpOutcome& outcome) {
    switch (outcome.error.kind) {
        case HttpErrorKind::kBadAddress:
        case HttpErrorKind::kResolve:
        case HttpErrorKind::kConnect:
        case HttpErrorKind::kConnectTimeout:
        case HttpErrorKind::kCancelled:
            return false;
        default:
            return true;
    }
}

TarselResult ExplainBmc(const ConnectOption& option, const TarselResult& result) {
    if (IsListening(Ask(option, kPlainCimPort, false, HttpRequest()))) {
        return ClosedCimOfBmc(CimTargetOf(option), kPlainCimPort);
    }
    const int web_port = WebPortOf(option);
    if (IsListening(Ask(option, web_port, true, HttpRequest()))) {
        return ClosedCimOfBmc(CimTargetOf(option), web_port);
    }
    return result;
}

TarselResult ExplainHypervisor(const ConnectOption& option, const TarselResult& result) {
    HttpRequest request;
    request.method = HttpMethod::kPost;
    request.target = "/sdk";
    request.headers = {{"Content-Type", "text/xml; charset=utf-8"}, {"SOAPAction", "urn:vim25"}};
    request.body = kContentRequest;
    const int web_port = WebPortOf(option);
    const HttpOutcome outcome = Ask(option, web_port, true, std::move(request));
    if (!IsListening(outcome)) return result;
    return ClosedCimOfHypervisor(CimTargetOf(option), web_port,
                                 ReadProductVersion(outcome.response.body));
}

}  // namespace

CurlSettings CurlSettingsFor(const ConnectOption& option, int port, bool use_tls) {
    CurlSettings settings;
    settings.host = option.target_address;
    settings.port = port;
    settings.use_tls = use_tls;
    settings.verify_certificate = option.verify_certificate;
    settings.ca_file = option.ca_file;
    settings.fingerprint = option.fingerprint;
    settings.legacy_tls = option.legacy_tls;
    settings.proxy = option.proxy;
    settings.use_environment_proxy = option.use_environment_proxy;
    settings.connect_timeout = Milliseconds(1000LL * option.connect_timeout_seconds);
    settings.max_body_bytes = option.max_body_bytes;
    settings.max_connections = 1;
    return settings;
}

TarselResult ExplainRefusal(const ConnectOption& option, const transport::CimFailure& failure,
                            const TarselResult& result) {
    const bool is_refused = failure.transport == HttpErrorKind::kConnect;
    const bool is_silent = failure.transport == HttpErrorKind::kConnectTimeout;
    if (option.cim_plain_http || option.run->IsCancelled()) return result;
    switch (TargetKindOf(option)) {
        case CimTargetKind::kHypervisor:
            // Its firewall drops what its disabled services would have got.
            return is_refused || is_silent ? ExplainHypervisor(option, result) : result;
        case CimTargetKind::kBmc:
            return is_refused ? ExplainBmc(option, result) : result;
        case CimTargetKind::kChassis:
            break;
    }
    return result;
}

TarselResult ClosedCimOfBmc(const std::string& target, int open_port) {
    return TarselResult(CIM_OVER_HTTPS_DISABLED,
                        "CIM over HTTPS is disabled on the BMC: nobody listens at " + target +
                            " although port " + std::to_string(open_port) +
                            " answers; enable CIM over HTTPS on the BMC and scan again.");
}

TarselResult ClosedCimOfHypervisor(const std::string& target, int open_port,
                                   const std::string& version) {
    if (!HasCimService(version)) {
        return TarselResult(ESXI_INTERNAL_ERROR,
                            "Tarsel do not support this installed VMWare ESXi Version.");
    }
    std::string host = "although the host answers on port " + std::to_string(open_port);
    if (!version.empty()) host += " (version " + version + ")";
    return TarselResult(
        NO_CIM_SERVICE,
        "The CIM service (sfcbd-watchdog) does not answer at " + target + " " + host +
            "; on the host, see its state with \"/etc/init.d/sfcbd-watchdog status\" and start it "
            "with \"esxcli system wbem set --enable true\" and \"/etc/init.d/sfcbd-watchdog "
            "start\"; releases after " +
            std::to_string(kLastMajorReleaseWithCim) + " have none.");
}

}  // namespace Vantix::cim
