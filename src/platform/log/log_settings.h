// Where log records go, which of them, and what must never stand in them.
#pragma once

#include <cstddef>
#include <string>

#include "common/export.h"

namespace Vantix {

struct LogSettings {
    std::string file;                              ///< log file; empty: no file is written
    int file_level = 3;                            ///< highest level written to the file (1 to 4)
    int console_level = 0;                         ///< highest level shown on stderr; 0: none
    std::size_t max_file_bytes = 5 * 1024 * 1024;  ///< the file is rotated beyond this size
    std::size_t max_files = 3;                     ///< rotated files kept beside the current one
};

/// Starts logging. Until it is called nothing is written anywhere. Returns an empty text, or one
/// sentence when the file cannot be opened (records then go to the console alone). The file is
/// made readable by its owner only.
TARSEL_EXPORT std::string ConfigureLog(const LogSettings& settings);

/// Writes what is pending and stops logging; secrets are forgotten.
TARSEL_EXPORT void ShutdownLog();

/// Masks `secret` (a password, a token) as "******" in every later record, also in its
/// JSON-escaped, XML-escaped, URL-encoded and Base64 forms. Empty texts are ignored.
TARSEL_EXPORT void AddLogSecret(const std::string& secret);

/// The text with all known secrets masked: for error texts that may quote a peer.
TARSEL_EXPORT std::string MaskSecrets(const std::string& text);

}  // namespace Vantix
