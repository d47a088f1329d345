#include "platform/log/secret_masker.h"

#include <algorithm>

#include "platform/log/log_settings.h"
#include "platform/log/secret_forms.h"
#include "platform/log/secret_patterns.h"

namespace Vantix {
namespace {

void MaskForm(const std::string& form, std::string& text) {
    const std::string mask(kSecretMask);
    std::size_t found = text.find(form);
    while (found != std::string::npos) {
        text.replace(found, form.size(), mask);
        found = text.find(form, found + mask.size());
    }
}

}  // namespace

SecretMasker& SecretMasker::Instance() {
    // Never destroyed: objects with static lifetime may still log while the process ends.
    static auto* const masker = new SecretMasker;
    return *masker;
}

void SecretMasker::Add(const std::string& secret) {
    const std::vector<std::string> more = FormsOfSecret(secret);
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const std::string& form : more) {
        if (std::find(forms_.begin(), forms_.end(), form) == forms_.end()) forms_.push_back(form);
    }
    std::stable_sort(forms_.begin(), forms_.end(), [](const std::string& a, const std::string& b) {
        return a.size() > b.size();
    });
}

void SecretMasker::ForgetAll() {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (std::string& form : forms_) std::fill(form.begin(), form.end(), '\0');
    forms_.clear();
}

std::string SecretMasker::Mask(const std::string& text) const {
    std::string masked = text;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        for (const std::string& form : forms_) MaskForm(form, masked);
    }
    return MaskSecretPatterns(masked);
}

void AddLogSecret(const std::string& secret) {
    SecretMasker::Instance().Add(secret);
}

std::string MaskSecrets(const std::string& text) {
    return SecretMasker::Instance().Mask(text);
}

}  // namespace Vantix
