// What a private key file says of itself before it is used.
#pragma once

#include <string>
#include <string_view>

namespace tarsel {

/// True when the text of a private key (PEM, PKCS #8 or OpenSSH's own form) needs a passphrase.
/// False for text that is no such key.
bool IsKeyEncrypted(std::string_view text);

/// The same for a file; false when it cannot be read.
bool IsKeyFileEncrypted(const std::string& file);

}  // namespace tarsel
