#include "transport/ssh/ssh_login.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "transport/ssh/prompt_rules.h"
#include "transport/text/text_cleaning.h"

namespace Vantix::transport {
namespace {

constexpr int kMostMethods = 3;
// Conversations without end are no login.
constexpr int kMostRounds = 8;

struct KeyEnd {
    void operator()(ssh_key key) const { ssh_key_free(key); }
};
using Key = std::unique_ptr<ssh_key_struct, KeyEnd>;

std::string Text(const char* text) {
    return text == nullptr ? "" : text;
}

class Login {
  public:
    explicit Login(SshLink& link)
        : link_(link),
          target_(link.Target()),
          limit_(StepLimit::In(target_.limits.authentication, SshProblem::kTimedOut,
                               link.Place() + " did not end the login within the limit")) {}

    SshFailure Run();

  private:
    using Step = std::function<int()>;

    SshFailure LoadKey();
    SshFailure TryMethods();
    SshFailure TryMethod(int method);
    SshFailure TryKeyboard();
    SshFailure Converse(int& state);
    [[nodiscard]] int NextMethod() const;
    [[nodiscard]] SshFailure Budget() const;
    SshFailure Ask(const Step& step, int& state);
    SshFailure Note(int state, const std::string& refusal, bool was_password_sent);
    [[nodiscard]] SshFailure EndedByServer(bool was_password_sent) const;
    [[nodiscard]] SshFailure NoMethodLeft() const;
    [[nodiscard]] std::string Account() const;
    [[nodiscard]] bool HasPassword() const { return !target_.password.empty(); }

    SshLink& link_;
    const SshTarget& target_;
    const StepLimit limit_;
    Key key_;
    bool is_in_ = false;
    bool was_password_sent_ = false;
    int tried_ = 0;
    std::string last_refusal_;
};

std::string Login::Account() const {
    return target_.user.empty() ? std::string("the local user's name")
                                : "user " + CleanText(target_.user);
}

SshFailure Login::Budget() const {
    if (!target_.may_try_login || target_.may_try_login()) return {};
    return {SshProblem::kAuthRefused,
            "no further login at " + link_.Place() + " was tried after a refused one"};
}

// Before anything of the user is sent: a mistake about the key is found here.
SshFailure Login::LoadKey() {
    if (target_.key_file.empty()) return {};
    const std::string passphrase = target_.key_passphrase;
    ssh_key key = nullptr;
    const int state = ssh_pki_import_privkey_file(target_.key_file.c_str(), passphrase.c_str(),
                                                  nullptr, nullptr, &key);
    key_.reset(key);
    if (state == SSH_OK) return {};
    const std::string file = CleanText(target_.key_file);
    if (state == SSH_EOF)
        return {SshProblem::kLocalFile, "the key file " + file + " is not readable"};
    return {SshProblem::kLocalFile,
            "the key file " + file + " holds no private key, or needs another passphrase"};
}

SshFailure Login::Run() {
    if (auto failure = LoadKey()) return failure;
    if (auto failure = Budget()) return failure;
    int state = SSH_AUTH_ERROR;
    if (auto failure = Ask([this] { return ssh_userauth_none(link_.Session(), nullptr); }, state)) {
        return failure;
    }
    if (state == SSH_AUTH_SUCCESS) return {};
    return TryMethods();
}

SshFailure Login::TryMethods() {
    for (int count = 0; count < kMostMethods && !is_in_; ++count) {
        const int method = NextMethod();
        if (method == 0) break;
        if (auto failure = Budget()) return failure;
        tried_ |= method;
        if (auto failure = TryMethod(method)) return failure;
    }
    return is_in_ ? SshFailure{} : NoMethodLeft();
}

// Without a key file the agent's keys come last beside a password: many of them would use up the
// attempts that the server grants.
int Login::NextMethod() const {
    const int open = ssh_userauth_list(link_.Session(), nullptr) & ~tried_;
    const bool has_key_method = (open & SSH_AUTH_METHOD_PUBLICKEY) != 0;
    if (has_key_method && (key_ || !HasPassword())) return SSH_AUTH_METHOD_PUBLICKEY;
    if (HasPassword() && !was_password_sent_) {
        if ((open & SSH_AUTH_METHOD_INTERACTIVE) != 0) return SSH_AUTH_METHOD_INTERACTIVE;
        if ((open & SSH_AUTH_METHOD_PASSWORD) != 0) return SSH_AUTH_METHOD_PASSWORD;
    }
    return has_key_method && target_.key_file.empty() ? SSH_AUTH_METHOD_PUBLICKEY : 0;
}

SshFailure Login::TryMethod(int method) {
    const ssh_session session = link_.Session();
    if (method == SSH_AUTH_METHOD_INTERACTIVE) return TryKeyboard();
    int state = SSH_AUTH_ERROR;
    if (method == SSH_AUTH_METHOD_PASSWORD) {
        was_password_sent_ = true;
        const Step step = [&] {
            return ssh_userauth_password(session, nullptr, target_.password.c_str());
        };
        if (auto failure = Ask(step, state)) return failure;
        return Note(state, "the password of " + Account(), true);
    }
    if (key_) {
        const Step step = [&] { return ssh_userauth_publickey(session, nullptr, key_.get()); };
        if (auto failure = Ask(step, state)) return failure;
        return Note(state, "the key " + CleanText(target_.key_file) + " for " + Account(), false);
    }
    const char* passphrase =
        target_.key_passphrase.empty() ? nullptr : target_.key_passphrase.c_str();
    const Step step = [&] { return ssh_userauth_publickey_auto(session, nullptr, passphrase); };
    if (auto failure = Ask(step, state)) return failure;
    return Note(state, "the keys of the agent and of the home folder for " + Account(), false);
}

SshFailure Login::TryKeyboard() {
    const ssh_session session = link_.Session();
    int state = SSH_AUTH_ERROR;
    for (int round = 0; round < kMostRounds; ++round) {
        const Step step = [&] { return ssh_userauth_kbdint(session, nullptr, nullptr); };
        if (auto failure = Ask(step, state)) return failure;
        if (state != SSH_AUTH_INFO) {
            return Note(state, "the password of " + Account(), was_password_sent_);
        }
        if (auto failure = Converse(state)) return failure;
        if (state != SSH_AUTH_INFO) return {};
    }
    return {SshProblem::kNoUsableAuth, link_.Place() + " does not stop asking questions at login"};
}

// Answers one set of questions. `state` leaves SSH_AUTH_INFO when they stay unanswered.
SshFailure Login::Converse(int& state) {
    const ssh_session session = link_.Session();
    std::vector<LoginPrompt> prompts;
    const int count = ssh_userauth_kbdint_getnprompts(session);
    for (int i = 0; i < count; ++i) {
        char is_shown = 0;
        const char* text =
            ssh_userauth_kbdint_getprompt(session, static_cast<unsigned>(i), &is_shown);
        prompts.push_back({Text(text), is_shown != 0});
    }
    const std::string instruction = Text(ssh_userauth_kbdint_getinstruction(session));
    switch (ReplyToPrompts(prompts, instruction, was_password_sent_)) {
        case PromptReply::kNothing:
            return {};
        case PromptReply::kPassword:
            was_password_sent_ = true;
            ssh_userauth_kbdint_setanswer(session, 0, target_.password.c_str());
            return {};
        case PromptReply::kPasswordMustChange:
            return {SshProblem::kPasswordMustChange,
                    "the password of " + Account() + " must be changed at the server first"};
        case PromptReply::kRefuse:
            break;
    }
    const std::string asked = CleanStart(prompts.empty() ? "" : prompts.front().text);
    last_refusal_ = link_.Place() + " asks for more than a password at login: \"" + asked + "\"";
    if (was_password_sent_) return {SshProblem::kNoUsableAuth, last_refusal_};
    state = SSH_AUTH_DENIED;
    return {};
}

SshFailure Login::Ask(const Step& step, int& state) {
    return link_.Repeat(limit_, SSH_AUTH_AGAIN, step, state);
}

SshFailure Login::Note(int state, const std::string& refusal, bool was_password_sent) {
    if (state == SSH_AUTH_SUCCESS) {
        is_in_ = true;
        return {};
    }
    if (state == SSH_AUTH_PARTIAL) return {};
    if (state != SSH_AUTH_DENIED) {
        if (link_.IsConnected()) return {};
        return EndedByServer(was_password_sent);
    }
    last_refusal_ = link_.Place() + " refused " + refusal;
    if (!was_password_sent) return {};
    if (target_.login_refused) target_.login_refused(last_refusal_);
    return {SshProblem::kAuthRefused, last_refusal_};
}

// A server that has seen too many wrong logins says so and hangs up.
SshFailure Login::EndedByServer(bool was_password_sent) const {
    const std::string words = link_.LastWords();
    const std::string text = link_.Place() + " ended the connection during login: " + words;
    if (words.find("authentication failures") == std::string::npos) {
        return {SshProblem::kConnectionLost, text};
    }
    if (was_password_sent && target_.login_refused) target_.login_refused(text);
    return {SshProblem::kAuthRefused, text};
}

SshFailure Login::NoMethodLeft() const {
    if (!link_.IsConnected()) return EndedByServer(false);
    const int list = ssh_userauth_list(link_.Session(), nullptr);
    std::string offered;
    const auto add = [&](int method, const char* name) {
        if ((list & method) != 0) offered += (offered.empty() ? "" : ", ") + std::string(name);
    };
    add(SSH_AUTH_METHOD_PUBLICKEY, "publickey");
    add(SSH_AUTH_METHOD_INTERACTIVE, "keyboard-interactive");
    add(SSH_AUTH_METHOD_PASSWORD, "password");
    add(SSH_AUTH_METHOD_HOSTBASED, "hostbased");
    add(SSH_AUTH_METHOD_GSSAPI_MIC, "gssapi-with-mic");
    if (offered.empty()) offered = "none known here";
    if (last_refusal_.empty()) {
        return {SshProblem::kNoUsableAuth, "no way to log in to " + link_.Place() + " as " +
                                               Account() + ": the server takes " + offered};
    }
    const bool is_about_key = tried_ != SSH_AUTH_METHOD_INTERACTIVE;
    return {is_about_key ? SshProblem::kAuthRefused : SshProblem::kNoUsableAuth,
            last_refusal_ + " (it takes " + offered + ")"};
}

}  // namespace

SshFailure LogIn(SshLink& link) {
    return Login(link).Run();
}

}  // namespace Vantix::transport
