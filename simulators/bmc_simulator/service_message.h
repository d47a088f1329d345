// One HTTP request and its answer as values, between the sockets and the simulated service.

#pragma once

#include <string>
#include <string_view>

#include "bmc_simulator/bmc_counts.h"

namespace simulators {

struct ServiceRequest {
    std::string method;
    std::string target;  ///< raw
    HeaderList headers;
    std::string body;
};

struct ServiceReply {
    int status = 200;
    HeaderList headers;  ///< without Content-Type and Content-Length
    std::string content_type = "application/json; charset=utf-8";
    std::string body;
};

/// A Redfish error body (DSP0266, error responses).
[[nodiscard]] ServiceReply ErrorReply(int status, std::string_view message_id,
                                      std::string_view text = {});

}  // namespace simulators
