#include "transport/ssh/prompt_rules.h"

#include <algorithm>
#include <cctype>

namespace Vantix::transport {
namespace {

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

bool AsksForNewPassword(const std::vector<LoginPrompt>& prompts, const std::string& instruction) {
    std::string all = Lower(instruction);
    for (const auto& prompt : prompts) all += "\n" + Lower(prompt.text);
    return all.find("new password") != std::string::npos ||
           all.find("new unix password") != std::string::npos ||
           all.find("change your password") != std::string::npos ||
           all.find("password has expired") != std::string::npos;
}

}  // namespace

PromptReply ReplyToPrompts(const std::vector<LoginPrompt>& prompts, const std::string& instruction,
                           bool was_password_sent) {
    if (AsksForNewPassword(prompts, instruction)) return PromptReply::kPasswordMustChange;
    if (prompts.empty()) return PromptReply::kNothing;
    const bool is_one_hidden = prompts.size() == 1 && !prompts.front().is_shown;
    return is_one_hidden && !was_password_sent ? PromptReply::kPassword : PromptReply::kRefuse;
}

}  // namespace Vantix::transport
