#include "tarsel/terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace tarsel {
namespace {

constexpr std::size_t kUsualColumns = 80;

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int Number() const { return number_; }
    [[nodiscard]] bool IsOpen() const { return number_ >= 0; }

  private:
    int number_;
};

// Switches the echo of a terminal off for as long as it lives.
class SilentTerminal {
  public:
    explicit SilentTerminal(int descriptor) : descriptor_(descriptor) {
        is_silent_ = tcgetattr(descriptor_, &former_) == 0;
        if (!is_silent_) return;
        termios silent = former_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHOE | ECHOK);
        silent.c_lflag |= ECHONL;
        is_silent_ = tcsetattr(descriptor_, TCSAFLUSH, &silent) == 0;
    }
    ~SilentTerminal() {
        if (is_silent_) tcsetattr(descriptor_, TCSAFLUSH, &former_);
    }
    SilentTerminal(const SilentTerminal&) = delete;
    SilentTerminal& operator=(const SilentTerminal&) = delete;
    [[nodiscard]] bool IsSilent() const { return is_silent_; }

  private:
    int descriptor_;
    termios former_{};
    bool is_silent_ = false;
};

// Holds back the signals that ask to stop, except while WaitForInput waits: a signal between the
// look at a flag and the read after it would otherwise go unnoticed.
class HeldSignals {
  public:
    HeldSignals() {
        sigset_t stopping;
        sigemptyset(&stopping);
        for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&stopping, number);
        pthread_sigmask(SIG_BLOCK, &stopping, &former_);
    }
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    /// False when a signal came.
    [[nodiscard]] bool WaitForInput(int descriptor) const {
        pollfd waiting{descriptor, POLLIN, 0};
        return ppoll(&waiting, 1, nullptr, &former_) > 0;
    }

  private:
    sigset_t former_{};
};

bool WriteAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// Byte by byte: whatever follows the line belongs to somebody else.
ReadState ReadLine(int descriptor, std::string& line) {
    line.clear();
    line.reserve(kLongestPassword);  // no copies of a secret left behind by growing
    char letter = 0;
    bool is_any = false;
    while (line.size() <= kLongestPassword) {
        const ssize_t count = read(descriptor, &letter, 1);
        if (count < 0) return errno == EINTR ? ReadState::kInterrupted : ReadState::kFailed;
        if (count == 0 && !is_any) return ReadState::kEmpty;
        if (count == 0 || letter == '\n') break;
        is_any = true;
        if (line.size() == kLongestPassword) return ReadState::kTooLong;
        line += letter;
    }
    if (line.ends_with('\r')) line.pop_back();
    return ReadState::kOk;
}

}  // namespace

bool IsErrorOutputInteractive() {
    const char* const type = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && type != nullptr && *type != '\0' &&
           std::string_view(type) != "dumb";
}

std::size_t TerminalColumns() {
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
    return size.ws_col;
}

ReadState PromptWithoutEcho(const std::string& prompt, const std::function<bool()>& is_interrupted,
                            std::string& line) {
    const Descriptor terminal(open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
    if (!terminal.IsOpen()) return ReadState::kMissing;
    const HeldSignals signals;
    if (is_interrupted()) return ReadState::kInterrupted;
    const SilentTerminal silence(terminal.Number());
    if (!silence.IsSilent() || !WriteAll(terminal.Number(), prompt)) return ReadState::kFailed;
    // A terminal gives whole lines: once there is something, the rest does not wait.
    if (!signals.WaitForInput(terminal.Number())) return ReadState::kInterrupted;
    return ReadLine(terminal.Number(), line);
}

ReadState ReadPrivateFileLine(const std::string& file, std::string& line) {
    const Descriptor input(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (!input.IsOpen()) return ReadState::kMissing;
    // Asked of the open file: a name could mean another file a moment later.
    struct stat status {};
    if (fstat(input.Number(), &status) != 0 || S_ISDIR(status.st_mode)) return ReadState::kFailed;
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) return ReadState::kTooOpen;
    const ReadState state = ReadLine(input.Number(), line);
    return state == ReadState::kOk && line.empty() ? ReadState::kEmpty : state;
}

std::string HowToCloseToOthers() {
    return "run chmod 600 on it";
}

ReadState ReadDescriptorLine(int descriptor, std::string& line) {
    if (fcntl(descriptor, F_GETFD) < 0) return ReadState::kMissing;
    const ReadState state = ReadLine(descriptor, line);
    return state == ReadState::kOk && line.empty() ? ReadState::kEmpty : state;
}

int StandardInputDescriptor() {
    return STDIN_FILENO;
}

bool IsStandardInputTerminal() {
    return isatty(STDIN_FILENO) == 1;
}

bool TakeEnvironmentVariable(const char* name, std::string& value) {
    char* const stored = std::getenv(name);
    if (stored == nullptr) return false;
    value = stored;
    // The kernel shows the first environment of a process as it stands in memory.
    std::memset(stored, 0, std::strlen(stored));
    unsetenv(name);
    return !value.empty();
}

void OccupyStandardDescriptors() {
    // The wrong direction on purpose: an error is told, nothing is lost in silence.
    const auto occupy = [](int descriptor, int flags) {
        if (fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF) return;
        const int opened = open("/dev/null", flags | O_NOCTTY);
        if (opened < 0 || opened == descriptor) return;
        dup2(opened, descriptor);
        close(opened);
    };
    occupy(STDIN_FILENO, O_WRONLY);
    occupy(STDOUT_FILENO, O_RDONLY);
    occupy(STDERR_FILENO, O_RDONLY);
}

WriteState WriteStandardOutput(const std::string& text) {
    if (WriteAll(STDOUT_FILENO, text)) return WriteState::kOk;
    return errno == EPIPE ? WriteState::kReaderGone : WriteState::kFailed;
}

void WipeText(std::string& text) {
    volatile char* const bytes = text.data();
    for (std::size_t i = 0; i < text.size(); ++i) bytes[i] = 0;
    text.clear();
}

}  // namespace tarsel
