#include "transport/ssh/command_wrapper.h"

#include <random>

#include "transport/ssh/remote_shell.h"

namespace Vantix::transport {
namespace {

// Enough to show, and longer than any line with the mark.
constexpr std::size_t kNoiseKept = 4096;

}  // namespace

std::string RandomMark() {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::random_device random;
    std::string mark = "begin-";
    for (int i = 0; i < 24; ++i) mark += kDigits[random() % kDigits.size()];
    return mark;
}

// "exec" keeps the process that the server started: its id stays that of the group, and no logout
// file can print behind the command. "kill -0 -$$" asks whether the group exists. setsid keeps the
// id, because a process that leads no group need not fork to lead a session.
std::string WrapCommand(const std::string& command_line, const std::string& mark) {
    const std::string script = "printf \"\\n%s %s\\n\" " + mark + " $$; printf \"\\n%s .\\n\" " +
                               mark +
                               " >&2; kill -0 -$$ 2>/dev/null && exec sh -c \"$1\"; "
                               "command -v setsid >/dev/null 2>&1 && exec setsid sh -c \"$1\"; "
                               "exec sh -c \"$1\"";
    return "exec sh -c " + QuoteForShell(script) + " sh " + QuoteForShell(command_line);
}

std::string EndGroupCommand(const std::string& group, const std::string& prefix) {
    const std::string one = " 2>/dev/null || kill -";
    const std::string script = "kill -TERM -" + group + one + "TERM " + group +
                               " 2>/dev/null || exit 0; i=0; "
                               "while [ $i -lt 10 ] && kill -0 -" +
                               group +
                               " 2>/dev/null; do "
                               "sleep 0.1 2>/dev/null || sleep 1; i=$((i+1)); done; "
                               "kill -KILL -" +
                               group + one + "KILL " + group + " 2>/dev/null; exit 0";
    return (prefix.empty() ? "exec" : prefix) + " sh -c " + QuoteForShell(script);
}

StreamStart::StreamStart(std::string mark) : line_start_("\n" + std::move(mark) + " ") {}

std::string StreamStart::Pass(std::string_view bytes) {
    if (has_begun_) return std::string(bytes);
    pending_ += bytes;
    const std::size_t start = pending_.find(line_start_);
    const std::size_t word = start + line_start_.size();
    const std::size_t end = start == std::string::npos ? start : pending_.find('\n', word);
    if (end != std::string::npos) {
        has_begun_ = true;
        noise_bytes_ += start;
        word_ = pending_.substr(word, end - word);
        return pending_.substr(end + 1);
    }
    if (pending_.size() > 2 * kNoiseKept) {
        noise_bytes_ += pending_.size() - kNoiseKept;
        pending_.erase(0, pending_.size() - kNoiseKept);
    }
    return {};
}

}  // namespace Vantix::transport
