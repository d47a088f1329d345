// The text around a remote command: a process group that can be ended, and a mark from which on the
// streams are its own. Pure.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Vantix::transport {

/// A word that no start file prints by chance.
[[nodiscard]] std::string RandomMark();

/// A line for the login shell that runs `command_line` under a POSIX shell. On the standard output
/// a line with mark and process id comes first, on the error output one with the mark. The id is
/// that of the process group, too: OpenSSH makes one for each command, elsewhere `setsid` does.
[[nodiscard]] std::string WrapCommand(const std::string& command_line, const std::string& mark);

/// A command that ends the process group: TERM, up to a second of grace, KILL. `prefix` as in
/// RemoteCommand::end_prefix; `group` is digits alone.
[[nodiscard]] std::string EndGroupCommand(const std::string& group, const std::string& prefix);

/// Cuts off what comes before the mark.
class StreamStart {
  public:
    explicit StreamStart(std::string mark);

    /// The part of `bytes` that belongs to the command; empty while the mark has not come.
    [[nodiscard]] std::string Pass(std::string_view bytes);

    [[nodiscard]] bool HasBegun() const { return has_begun_; }
    /// The word behind the mark, for example the process id.
    [[nodiscard]] const std::string& Word() const { return word_; }
    [[nodiscard]] std::size_t NoiseBytes() const { return noise_bytes_; }
    /// The last of what came instead of the mark.
    [[nodiscard]] const std::string& Noise() const { return pending_; }

  private:
    const std::string line_start_;
    std::string pending_;
    std::string word_;
    std::size_t noise_bytes_ = 0;
    bool has_begun_ = false;
};

}  // namespace Vantix::transport
