// Programs of a POSIX system. Each is started in a session of its own: it has no terminal to ask
// questions on, a Ctrl-C reaches this process alone, and it can be ended with all its children.

#include "transport/process/command_runner.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "transport/process/child_streams_posix.h"
#include "transport/process/program_search.h"

namespace Vantix::transport {
namespace {

using std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

constexpr int kFirstPassedNumber = 3;
constexpr milliseconds kLookAgain{50};
constexpr milliseconds kGraceAfterTerm{2000};
constexpr milliseconds kGraceForStreams{500};

bool IsProgramFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

// Texts in the shape that exec wants; the texts must outlive the pointers.
std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> EnvironmentOf(const Command& command, const std::string& folders) {
    std::vector<std::string> variables = {"PATH=" + folders, "LC_ALL=C", "LANGUAGE=C", "TZ=UTC0"};
    const std::string home = Variable("HOME");
    if (!home.empty()) variables.push_back("HOME=" + home);
    for (const auto& [name, value] : command.environment) variables.push_back(name + "=" + value);
    return variables;
}

class SpawnSettings {
  public:
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&attributes_, &none);
        const int flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSID;
        posix_spawnattr_setflags(&attributes_, static_cast<short>(flags));
    }
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    void Give(int descriptor, int as) {
        posix_spawn_file_actions_adddup2(&actions_, descriptor, as);
    }
    void NoInput() {
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    /// Files that other parts of this process opened without thinking of programs.
    void CloseFrom(int number) { posix_spawn_file_actions_addclosefrom_np(&actions_, number); }

    [[nodiscard]] const posix_spawn_file_actions_t* Actions() const { return &actions_; }
    [[nodiscard]] const posix_spawnattr_t* Attributes() const { return &attributes_; }

  private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

class ChildProcess {
  public:
    explicit ChildProcess(const Command& command) : command_(command) {}

    CommandOutcome Run() {
        if (Start()) Watch();
        outcome_.output = std::move(output_.Text());
        outcome_.error_output = std::move(error_output_.Text());
        outcome_.is_output_cut = output_.IsCut() || error_output_.IsCut();
        return std::move(outcome_);
    }

  private:
    bool Start();
    bool Fail(const char* what, int error);
    void Watch();
    [[nodiscard]] bool MustEnd();
    void End();
    bool Reap(int options);
    void WaitUntilReaped(milliseconds limit);
    void TakeTheRest();

    const Command& command_;
    CommandOutcome outcome_;
    ChildStream output_;
    ChildStream error_output_;
    pid_t process_ = -1;
    bool is_reaped_ = false;
    SteadyClock::time_point deadline_;
};

bool ChildProcess::Fail(const char* what, int error) {
    outcome_.end = CommandEnd::kNotStarted;
    outcome_.text = std::string(what) + ": " + std::strerror(error);
    return false;
}

bool ChildProcess::Start() {
    const std::string folders = ProgramFolders(Variable("PATH"));
    std::string program = FindProgram(command_.program, folders, IsProgramFile);
    if (program.empty()) {
        outcome_.end = CommandEnd::kNotFound;
        outcome_.text = "there is no program " + command_.program;
        return false;
    }
    if (!output_.Open() || !error_output_.Open()) return Fail("pipe", errno);
    SpawnSettings settings;
    settings.NoInput();
    settings.Give(output_.WriteEnd(), STDOUT_FILENO);
    settings.Give(error_output_.WriteEnd(), STDERR_FILENO);
    std::vector<OwnedDescriptor> passed;
    int number = kFirstPassedNumber;
    for (const auto& text : command_.passed_texts) {
        passed.push_back(MovedUp(MemoryFile(text)));
        if (!passed.back().IsOpen()) return Fail("memory file", errno);
        settings.Give(passed.back().Number(), number++);
    }
    settings.CloseFrom(number);
    std::vector<std::string> words = {program};
    words.insert(words.end(), command_.arguments.begin(), command_.arguments.end());
    std::vector<std::string> variables = EnvironmentOf(command_, folders);
    deadline_ = SteadyClock::now() + command_.time_limit;
    const int error =
        posix_spawn(&process_, program.c_str(), settings.Actions(), settings.Attributes(),
                    Pointers(words).data(), Pointers(variables).data());
    output_.CloseWriteEnd();
    error_output_.CloseWriteEnd();
    return error == 0 || Fail("start", error);
}

void ChildProcess::Watch() {
    while (!Reap(WNOHANG)) {
        if (MustEnd()) {
            End();
            break;
        }
        if (output_.IsAtEnd() && error_output_.IsAtEnd()) {
            WaitUntilReaped(kLookAgain);
        } else {
            DrainBoth(output_, error_output_, command_.max_output_bytes, kLookAgain);
        }
    }
    TakeTheRest();
}

bool ChildProcess::MustEnd() {
    if (command_.is_cancelled && command_.is_cancelled()) {
        outcome_.end = CommandEnd::kCancelled;
        return true;
    }
    if (SteadyClock::now() < deadline_) return false;
    outcome_.end = CommandEnd::kTimedOut;
    return true;
}

// First politely, so that a session at the other side is closed; then for good.
void ChildProcess::End() {
    const CommandEnd reason = outcome_.end;
    kill(-process_, SIGTERM);
    WaitUntilReaped(kGraceAfterTerm);
    kill(-process_, SIGKILL);
    while (!Reap(0)) {
    }
    outcome_.end = reason;
    outcome_.exit_status = -1;
}

bool ChildProcess::Reap(int options) {
    if (is_reaped_) return true;
    int status = 0;
    const pid_t ended = waitpid(process_, &status, options);
    if (ended == 0 || (ended < 0 && errno == EINTR)) return false;
    is_reaped_ = true;
    outcome_.end = CommandEnd::kExited;
    // Without a status (somebody else ignores all children's ends) the output has to do.
    if (ended < 0) return true;
    if (WIFEXITED(status)) {
        outcome_.exit_status = WEXITSTATUS(status);
    } else {
        outcome_.end = CommandEnd::kSignalled;
    }
    return true;
}

// Reads on meanwhile: a program that cannot get rid of its output does not end.
void ChildProcess::WaitUntilReaped(milliseconds limit) {
    const auto until = SteadyClock::now() + limit;
    while (!Reap(WNOHANG) && SteadyClock::now() < until) {
        DrainBoth(output_, error_output_, command_.max_output_bytes, milliseconds(5));
    }
}

// A child left behind may hold the pipes open for ever.
void ChildProcess::TakeTheRest() {
    const auto until = SteadyClock::now() + kGraceForStreams;
    while (!(output_.IsAtEnd() && error_output_.IsAtEnd()) && SteadyClock::now() < until) {
        DrainBoth(output_, error_output_, command_.max_output_bytes, milliseconds(10));
    }
    if (!(output_.IsAtEnd() && error_output_.IsAtEnd())) kill(-process_, SIGKILL);
}

class PosixCommandRunner : public CommandRunner {
  public:
    CommandOutcome Run(const Command& command) override { return ChildProcess(command).Run(); }
};

}  // namespace

std::string PassedTextPath(std::size_t index) {
    return "/dev/fd/" + std::to_string(kFirstPassedNumber + index);
}

CommandRunner& SystemCommandRunner() {
    static PosixCommandRunner runner;
    return runner;
}

}  // namespace Vantix::transport
