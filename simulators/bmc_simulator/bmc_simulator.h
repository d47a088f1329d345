// A simulated BMC: a Redfish service over real TLS on loopback, served from a scenario folder by a
// background thread. It shares no source with the product, so that a misreading of the protocol
// cannot hide on both sides. It does not validate schemas and keeps no state but its sessions.
//
//   BmcOptions options;
//   options.scenario_dir = ".../scenarios/rack-server";
//   BmcSimulator bmc(options);
//   ... talk to bmc.Url() with the CA file bmc.CaFile() ...
//   EXPECT_EQ(bmc.Counts().sessions_open, 0);

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bmc_simulator/bmc_counts.h"
#include "bmc_simulator/bmc_options.h"

namespace simulators {

class BmcSimulator {
  public:
    /// Reads the scenario, makes the certificate, listens and starts to serve.
    /// Throws std::runtime_error with the reason where one of these fails.
    explicit BmcSimulator(BmcOptions options);
    /// Stops, and removes the CA file.
    ~BmcSimulator();
    BmcSimulator(const BmcSimulator&) = delete;
    BmcSimulator& operator=(const BmcSimulator&) = delete;

    [[nodiscard]] int Port() const;
    [[nodiscard]] std::string Url() const;      ///< "https://127.0.0.1:PORT"
    [[nodiscard]] std::string UrlIpv6() const;  ///< "https://[::1]:PORT"

    [[nodiscard]] const std::string& CertificatePem() const;
    /// SHA-256 of the certificate, 64 lower-case hexadecimal digits.
    [[nodiscard]] const std::string& Fingerprint() const;
    /// File with the certificate, for clients that verify; empty with plain HTTP.
    [[nodiscard]] const std::string& CaFile() const;

    [[nodiscard]] BmcCounts Counts() const;
    /// Everything to zero but the sessions and connections that are open now.
    void ResetCounts();

    [[nodiscard]] BmcOptions Options() const;
    /// Takes effect with the next request. Transport settings and the scenario folder keep their
    /// values of the start; sessions stay. Used-up fault rules start again.
    void SetOptions(BmcOptions options);
    void SetFaults(std::vector<FaultRule> faults);
    /// Forgets all tokens, as a restarted BMC does.
    void ForgetSessions();

    /// Closes all connections and the listening sockets; later calls do nothing.
    void Stop();

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace simulators
