#include "transport/http/redirect_follower.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

namespace Vantix::transport {

namespace {

constexpr int kMaxRedirects = 3;

bool IsRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

char Lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return Lower(a) == Lower(b); });
}

struct Authority {
    std::string host;
    int port = 0;
    bool is_valid = false;
};

int DefaultPort(std::string_view scheme) {
    return EqualIgnoringCase(scheme, "https") ? 443 : 80;
}

// Splits "host:port" or "[v6]:port"; user information makes it invalid.
Authority ReadAuthority(std::string_view text, int default_port) {
    Authority authority;
    if (text.find('@') != std::string_view::npos) return authority;
    const std::size_t bracket = text.find(']');
    const std::size_t colon = text.find(':', bracket == std::string_view::npos ? 0 : bracket);
    std::string_view host = text.substr(0, colon);
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
        host = host.substr(1, host.size() - 2);
    }
    authority.host = std::string(host);
    authority.port = default_port;
    authority.is_valid = !host.empty();
    if (colon == std::string_view::npos) return authority;
    const std::string_view digits = text.substr(colon + 1);
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), authority.port);
    authority.is_valid =
        authority.is_valid && read.ec == std::errc() && read.ptr == digits.data() + digits.size();
    return authority;
}

std::string FolderOf(const std::string& target) {
    const std::string path = target.substr(0, target.find('?'));
    return path.substr(0, path.rfind('/') + 1);
}

}  // namespace

RedirectFollower::RedirectFollower(HttpTransport& inner, std::string scheme, std::string host,
                                   int port)
    : inner_(inner), scheme_(std::move(scheme)), host_(std::move(host)), port_(port) {}

void RedirectFollower::Submit(HttpRequest request, Handler handler) {
    SubmitFollowing(std::move(request), std::move(handler), kMaxRedirects);
}

void RedirectFollower::SubmitFollowing(HttpRequest request, Handler handler, int redirects_left) {
    HttpRequest again = request;
    inner_.Submit(std::move(request), [this, again = std::move(again), handler = std::move(handler),
                                       redirects_left](HttpOutcome&& outcome) mutable {
        if (outcome.Answered() && IsRedirect(outcome.response.status) && redirects_left > 0) {
            const std::string target = TargetOf(outcome.response.Header("location"), again.target);
            if (!target.empty()) {
                again.target = target;
                SubmitFollowing(std::move(again), std::move(handler), redirects_left - 1);
                return;
            }
        }
        handler(std::move(outcome));
    });
}

std::string RedirectFollower::TargetOf(const std::string& location,
                                       const std::string& asked) const {
    if (location.empty()) return {};
    const std::size_t mark = location.find("://");
    // Behind a slash or a question mark it is only text.
    if (mark == std::string::npos || location.find_first_of("/?#") < mark) {
        if (location.rfind("//", 0) == 0) return {};
        const std::string target = location.front() == '/' ? location : FolderOf(asked) + location;
        return target.substr(0, target.find('#'));
    }
    const std::string_view scheme = std::string_view(location).substr(0, mark);
    if (!EqualIgnoringCase(scheme, scheme_)) return {};
    const std::size_t path = location.find_first_of("/?#", mark + 3);
    const std::size_t length = path == std::string::npos ? path : path - mark - 3;
    const Authority authority =
        ReadAuthority(std::string_view(location).substr(mark + 3, length), DefaultPort(scheme));
    if (!authority.is_valid || !EqualIgnoringCase(authority.host, host_) ||
        authority.port != port_) {
        return {};
    }
    if (path == std::string::npos) return "/";
    std::string target = location.substr(path);
    target = target.substr(0, target.find('#'));
    return target.empty() || target.front() != '/' ? "/" + target : target;
}

bool RedirectFollower::Step(Milliseconds max_wait) {
    return inner_.Step(max_wait);
}
void RedirectFollower::SetMaxConnections(int count) {
    inner_.SetMaxConnections(count);
}
void RedirectFollower::DropIdleConnections() {
    inner_.DropIdleConnections();
}
void RedirectFollower::Abort(AbortScope scope) {
    inner_.Abort(scope);
}

}  // namespace Vantix::transport
