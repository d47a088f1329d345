// A bare libcurl client for tests of the simulators: one handle, one kept connection, no retries
// and no opinion. Deliberately shares nothing with the product's HTTP client.

#pragma once

#include <curl/curl.h>

#include <map>
#include <string>
#include <vector>

#include "bmc_simulator/bmc_simulator.h"

namespace simulator_test {

inline constexpr char kRoot[] = "/redfish/v1";
inline constexpr char kChassis[] = "/redfish/v1/Chassis";

struct Reply {
    CURLcode result = CURLE_OK;
    long status = 0;
    std::string body;
    std::map<std::string, std::string> headers;  ///< names in lower case
    long new_connections = 0;

    [[nodiscard]] std::string Header(const std::string& name) const;
};

class TestClient {
  public:
    /// Talks to `bmc`, verifying its certificate against the CA file.
    explicit TestClient(const simulators::BmcSimulator& bmc);
    /// Any base URL; `ca_file` empty: certificates are not verified.
    TestClient(std::string base_url, const std::string& ca_file);
    ~TestClient();
    TestClient(const TestClient&) = delete;
    TestClient& operator=(const TestClient&) = delete;

    void UseBasic(const std::string& user, const std::string& password);
    void UseToken(const std::string& token) { token_ = token; }
    void AddHeader(const std::string& line) { extra_headers_.push_back(line); }
    template <typename Value>
    void SetOption(CURLoption option, Value value) {
        curl_easy_setopt(curl_, option, value);
    }

    Reply Get(const std::string& target);
    Reply Post(const std::string& target, const std::string& body);
    Reply Send(const std::string& method, const std::string& target);

    /// POST of the credentials to the standard sessions; the token is used from then on.
    Reply LogIn(const std::string& user = "demo", const std::string& password = "demo-pass-1");

  private:
    Reply Perform(const std::string& target);

    CURL* curl_;
    std::string base_url_;
    std::string token_;
    std::vector<std::string> extra_headers_;
};

/// Options for a scenario that comes with the sources.
[[nodiscard]] simulators::BmcOptions ShippedScenario(const std::string& folder);

/// How often `part` stands in `text`.
[[nodiscard]] int CountOf(const std::string& part, const std::string& text);

inline constexpr char kSessions[] = "/redfish/v1/SessionService/Sessions";
inline constexpr char kInventory[] = "/redfish/v1/UpdateService/FirmwareInventory";
inline constexpr char kExpand[] = "?$expand=.($levels=1)";

}  // namespace simulator_test
