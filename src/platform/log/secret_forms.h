// The shapes in which one secret can turn up in protocol texts.
#pragma once

#include <string>
#include <vector>

namespace Vantix {

/// The secret itself and its JSON-escaped, XML-escaped, URL-encoded (also form-encoded) and Base64
/// forms, without repetitions, longest first. Of Base64 also the letters that stay the same when
/// other text ("user:") stands before the secret, for secrets of at least 4 bytes: shorter ones
/// leave too few letters to tell them from ordinary text. Empty for an empty secret.
std::vector<std::string> FormsOfSecret(const std::string& secret);

}  // namespace Vantix
