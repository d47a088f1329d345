// A throw-away self-signed certificate for a simulated machine. Made in memory; writes no file.

#pragma once

#include <string>
#include <vector>

#include "bmc_simulator/bmc_options.h"

namespace simulators {

struct Certificate {
    std::string certificate_pem;
    std::string private_key_pem;
    std::string fingerprint;  ///< SHA-256 of the DER form, 64 lower-case hexadecimal digits
};

/// `names` are subject alternative names in OpenSSL's form ("DNS:localhost", "IP:::1"). Valid from
/// yesterday for 30 days; an expired one ended yesterday. Throws std::runtime_error on failure.
[[nodiscard]] Certificate MakeCertificate(KeyKind key_kind, const std::vector<std::string>& names,
                                          bool expired);

/// SHA-256 of a PEM certificate, as in Certificate; throws std::runtime_error where it is none.
[[nodiscard]] std::string FingerprintOf(const std::string& certificate_pem);

}  // namespace simulators
