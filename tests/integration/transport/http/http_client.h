// Shorthands for tests that talk to the simulated BMC through the real libcurl transport.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bmc_simulator/bmc_simulator.h"
#include "transport/http/curl_transport.h"

namespace Vantix::transport {

inline constexpr const char* kRoot = "/redfish/v1";

inline simulators::BmcOptions SmallBmc() {
    simulators::BmcOptions options;
    options.replaced_bodies[kRoot] = R"({"Name":"Root of an invented service"})";
    options.replaced_bodies["/redfish/v1/Systems"] = R"({"Name":"Systems"})";
    return options;
}

inline simulators::FaultRule Always(simulators::Fault fault) {
    simulators::FaultRule rule;
    rule.fault = std::move(fault);
    return rule;
}

inline simulators::Fault FaultOf(simulators::Fault::Kind kind) {
    simulators::Fault fault;
    fault.kind = kind;
    return fault;
}

/// Trusts exactly this simulator.
inline CurlSettings SettingsFor(const simulators::BmcSimulator& bmc) {
    CurlSettings settings;
    settings.host = "127.0.0.1";
    settings.port = bmc.Port();
    settings.ca_file = bmc.CaFile();
    return settings;
}

inline HttpRequest Get(const std::string& target) {
    HttpRequest request;
    request.target = target;
    return request;
}

inline HttpRequest GetAs(const std::string& target, const std::string& user,
                         const std::string& password) {
    HttpRequest request = Get(target);
    request.basic = {user, password};
    return request;
}

inline HttpRequest PostTo(const std::string& target, const std::string& body) {
    HttpRequest request = Get(target);
    request.method = HttpMethod::kPost;
    request.headers = {{"Content-Type", "application/json"}};
    request.body = body;
    return request;
}

/// All at once; the outcomes in the order of the requests.
inline std::vector<HttpOutcome> AskAll(HttpTransport& transport,
                                       const std::vector<HttpRequest>& requests) {
    std::vector<HttpOutcome> outcomes(requests.size());
    for (std::size_t index = 0; index < requests.size(); ++index) {
        transport.Submit(requests[index], [&outcomes, index](HttpOutcome&& outcome) {
            outcomes[index] = std::move(outcome);
        });
    }
    while (transport.Step(Milliseconds(1000))) {
    }
    return outcomes;
}

inline HttpOutcome Ask(HttpTransport& transport, const HttpRequest& request) {
    return std::move(AskAll(transport, {request}).front());
}

inline HttpOutcome AskOnce(const CurlSettings& settings, const HttpRequest& request) {
    CurlTransport transport(settings);
    return Ask(transport, request);
}

}  // namespace Vantix::transport
