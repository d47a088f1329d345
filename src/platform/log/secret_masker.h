// Knows the secrets of this process and takes them out of texts.
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace Vantix {

/// Safe to use from several threads.
class SecretMasker {
  public:
    /// The one masker of the process; lives until the end.
    static SecretMasker& Instance();

    /// From now on `secret` is masked in all forms of FormsOfSecret. Empty texts are ignored.
    void Add(const std::string& secret);

    void ForgetAll();

    /// Known secrets first, then whatever looks like one (MaskSecretPatterns).
    [[nodiscard]] std::string Mask(const std::string& text) const;

  private:
    mutable std::mutex mutex_;
    std::vector<std::string> forms_;  // longest first: a long form may hold a short one
};

}  // namespace Vantix
