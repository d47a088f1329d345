// What a file of known host keys (the format of OpenSSH) says about one server.
#pragma once

#include <libssh/libssh.h>

#include <istream>
#include <string>

namespace Vantix::transport {

enum class KnownHost {
    kSame,
    kUnknown,    ///< no line for this server
    kOtherType,  ///< lines for this server, but none with a key of this type
    kChanged,
    kRevoked  ///< the key is marked as one never to trust
};

struct KnownHostFinding {
    KnownHost state = KnownHost::kUnknown;
    int line = 0;             ///< of the key that does not agree; from 1
    std::string fingerprint;  ///< of that key, "SHA256:..."
};

/// The SHA-256 fingerprint as OpenSSH shows it; empty when there is none.
[[nodiscard]] std::string KeyFingerprint(ssh_key key);

/// The name under which such a file keeps a server: "host", or "[host]:port" for other ports than
/// 22; in lower case.
[[nodiscard]] std::string KnownHostName(const std::string& host, int port);

/// Lines of certificate authorities and lines that cannot be read are passed over.
[[nodiscard]] KnownHostFinding FindKnownHost(std::istream& file, const std::string& name,
                                             ssh_key key);

}  // namespace Vantix::transport
