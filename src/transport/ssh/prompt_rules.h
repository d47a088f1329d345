// What is answered to the questions of a keyboard-interactive login (RFC 4256).
//
// The password goes out once, and only where the server asks for exactly one thing that is not to
// be shown while it is typed.
#pragma once

#include <string>
#include <vector>

namespace Vantix::transport {

struct LoginPrompt {
    std::string text;
    bool is_shown = false;  ///< what is typed may be shown
};

enum class PromptReply {
    kNothing,             ///< the server only says something: an empty answer
    kPassword,            ///< answer with the password
    kRefuse,              ///< it asks for something else or for more
    kPasswordMustChange,  ///< it asks for a new password
};

/// `instruction` is what the server says above its prompts.
[[nodiscard]] PromptReply ReplyToPrompts(const std::vector<LoginPrompt>& prompts,
                                         const std::string& instruction, bool was_password_sent);

}  // namespace Vantix::transport
