// Whom an HTTPS connection trusts: the system's store, a CA file, one certificate known by its
// fingerprint, or anybody.
//
// The check happens inside the handshake, before a byte of a request is sent. Does not ask the user
// and remembers nothing.
#pragma once

#include <curl/curl.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "transport/http/curl_transport.h"

namespace Vantix::transport {

using Sha256Digest = std::array<std::uint8_t, 32>;

/// Reads 64 hexadecimal digits; colons and blanks between them are skipped. Nothing when `text` is
/// anything else.
[[nodiscard]] std::optional<Sha256Digest> ParseFingerprint(std::string_view text);

/// Upper-case hexadecimal pairs separated by colons, as certificate tools print them.
[[nodiscard]] std::string FingerprintText(const Sha256Digest& digest);

class TlsTrust {
  public:
    explicit TlsTrust(const CurlSettings& settings);
    TlsTrust(const TlsTrust&) = delete;
    TlsTrust& operator=(const TlsTrust&) = delete;

    /// One sentence when the settings cannot be used, for example a malformed fingerprint; empty
    /// otherwise.
    [[nodiscard]] const std::string& SetupError() const { return setup_error_; }

    /// Sets all TLS options of `easy`. The object must outlive the handle's connections.
    void Apply(CURL* easy);

    /// `text` (libcurl's words for a failed handshake or check) with what a user can do about it.
    [[nodiscard]] std::string Explain(CURLcode code, const std::string& text) const;

    /// Compares the certificate that a peer presented, in DER form, with the wanted fingerprint.
    [[nodiscard]] bool IsWanted(const std::uint8_t* certificate, std::size_t size);

    [[nodiscard]] bool IsPinned() const { return pin_.has_value(); }
    [[nodiscard]] bool IsLegacyAllowed() const { return settings_.legacy_tls; }

  private:
    void ApplyTrust(CURL* easy) const;

    CurlSettings settings_;
    std::string ca_bytes_;  // of the CA file, read once
    std::optional<Sha256Digest> pin_;
    std::string seen_fingerprint_;  // of the last certificate that was refused
    std::string setup_error_;
};

}  // namespace Vantix::transport
