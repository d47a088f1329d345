// Runs helper programs: an argument vector in, both output streams and the way it ended out.
//
// No shell, no inherited environment, a closed standard input, a limit on time and on output.
// Secrets travel in passed texts, never in arguments or environment variables, because other users
// of the machine can read those.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Vantix::transport {

/// A text that the program can open and read as the file PassedTextPath(index).
using PassedTexts = std::vector<std::string>;

/// The name under which the program opens the text at `index` of Command::passed_texts, for use in
/// an argument. The text never stands in a file system that others can see.
[[nodiscard]] std::string PassedTextPath(std::size_t index);

struct Command {
    /// A path with a slash, or a name that is looked up in the usual folders for programs.
    std::string program;
    std::vector<std::string> arguments;  ///< without the program's own name
    PassedTexts passed_texts;
    /// Beyond PATH, HOME, the C locale and UTC, which every program gets.
    std::vector<std::pair<std::string, std::string>> environment;
    std::chrono::milliseconds time_limit{30000};     ///< then it is ended, with all its children
    std::size_t max_output_bytes = 4 * 1024 * 1024;  ///< of each stream; the rest is dropped
    std::function<bool()> is_cancelled;              ///< asked now and then; true ends the program
};

enum class CommandEnd {
    kExited,      ///< by itself; see exit_status
    kSignalled,   ///< by a signal that did not come from here
    kNotFound,    ///< there is no such program
    kNotStarted,  ///< the system refused to start it
    kTimedOut,
    kCancelled
};

struct CommandOutcome {
    CommandEnd end = CommandEnd::kNotStarted;
    int exit_status = -1;  ///< -1 unless kExited, or when the system does not tell
    std::string output;
    std::string error_output;
    bool is_output_cut = false;  ///< one of the streams was longer than allowed
    std::string text;            ///< why it did not start, or did not come to an end; may be empty
};

class CommandRunner {
  public:
    virtual ~CommandRunner() = default;

    /// Runs the program to its end, or ends it. Never throws; blocks for at most the time limit and
    /// the few seconds that a hard end takes.
    [[nodiscard]] virtual CommandOutcome Run(const Command& command) = 0;
};

/// Runs programs of this machine.
CommandRunner& SystemCommandRunner();

}  // namespace Vantix::transport
