#include "support/child_process_posix.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace test_support {
namespace {

constexpr auto kPatience = std::chrono::seconds(60);
constexpr int kSignalled = 1000;

using Ends = std::array<int, 2>;

Ends MakePipe() {
    Ends ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    return ends;
}

int OpenMaster(std::string& slave) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) {
        throw std::runtime_error("no terminal");
    }
    slave = ptsname(master);
    return master;
}

void WriteAll(int descriptor, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t count = write(descriptor, text.data() + done, text.size() - done);
        if (count <= 0) return;
        done += static_cast<std::size_t>(count);
    }
}

// Makes a new process ready for its program: signals, terminal, standard streams, folder.
void TakePlace(int input, int output, int errors, const char* terminal, const char* folder) {
    for (const int number : {SIGPIPE, SIGINT, SIGTERM, SIGHUP}) std::signal(number, SIG_DFL);
    setsid();
    if (terminal != nullptr) {
        errors = open(terminal, O_RDWR);
        ioctl(errors, TIOCSCTTY, 0);
    }
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    if (folder != nullptr && chdir(folder) != 0) _exit(126);
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

ChildProcess::ChildProcess(ChildSetup setup) : setup_(std::move(setup)) {
    std::signal(SIGPIPE, SIG_IGN);
    const Ends input = MakePipe();
    const Ends output = MakePipe();
    const Ends errors = MakePipe();
    std::string terminal;
    if (setup_.has_terminal) master_ = OpenMaster(terminal);
    Start(input[0], output[1], errors[1], terminal);
    close(input[0]);
    close(output[1]);
    close(errors[1]);
    input_ = input[1];
    WriteAll(input_, setup_.input);
    if (!setup_.keeps_input_open) CloseInput();
    if (setup_.has_closed_output_pipe) {
        close(output[0]);
    } else {
        ++open_streams_;
        readers_.emplace_back([this, output] { Collect(output[0], output_); });
    }
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        ++open_streams_;
    }
    const int error_source = setup_.has_terminal ? master_ : errors[0];
    if (setup_.has_terminal) close(errors[0]);
    readers_.emplace_back([this, error_source] { Collect(error_source, errors_); });
}

ChildProcess::~ChildProcess() {
    if (!is_ended_) {
        kill(id_, SIGKILL);
        Wait();
    }
    CloseInput();
}

void ChildProcess::Start(int input, int output, int errors, const std::string& terminal) {
    std::vector<std::string> environment;
    for (const auto& [name, value] : setup_.environment) environment.push_back(name + "=" + value);
    const std::vector<char*> arguments = Pointers(setup_.arguments);
    const std::vector<char*> variables = Pointers(environment);
    id_ = fork();
    if (id_ < 0) throw std::runtime_error("no process");
    if (id_ != 0) return;
    // The test may have other threads: from here on nothing may allocate or lock.
    TakePlace(input, output, errors, terminal.empty() ? nullptr : terminal.c_str(),
              setup_.folder.empty() ? nullptr : setup_.folder.c_str());
    execve(arguments.front(), arguments.data(), variables.data());
    _exit(127);
}

void ChildProcess::Collect(int descriptor, std::string& text) {
    std::array<char, 4096> block{};
    for (;;) {
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;  // a terminal whose program has ended gives an error
        const std::lock_guard<std::mutex> lock(mutex_);
        text.append(block.data(), static_cast<std::size_t>(count));
        more_.notify_all();
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    if (descriptor != master_) close(descriptor);
    --open_streams_;
    more_.notify_all();
}

bool ChildProcess::WaitFor(const std::string& text, const std::string& part) {
    std::unique_lock<std::mutex> lock(mutex_);
    const auto is_there = [&] { return text.find(part) != std::string::npos; };
    more_.wait_for(lock, kPatience, [&] { return is_there() || open_streams_ == 0; });
    return is_there();
}

bool ChildProcess::WaitForOutput(const std::string& text) {
    return WaitFor(output_, text);
}

bool ChildProcess::WaitForErrors(const std::string& text) {
    return WaitFor(errors_, text);
}

void ChildProcess::Type(const std::string& text) const {
    WriteAll(setup_.has_terminal ? master_ : input_, text);
}

void ChildProcess::CloseInput() {
    if (input_ >= 0) close(input_);
    input_ = -1;
}

bool ChildProcess::TerminalEchoes() const {
    termios state{};
    return tcgetattr(master_, &state) == 0 && (state.c_lflag & ECHO) != 0;
}

void ChildProcess::Signal(int number) const {
    kill(id_, number);
}

bool ChildProcess::HasEnded() {
    int status = 0;
    if (waitpid(id_, &status, WNOHANG) != id_) return false;
    exit_code_ = WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
    return true;
}

int ChildProcess::Wait() {
    const auto limit = std::chrono::steady_clock::now() + kPatience;
    while (!is_ended_) {
        is_ended_ = HasEnded();
        if (!is_ended_ && std::chrono::steady_clock::now() > limit) {
            kill(id_, SIGKILL);
            waitpid(id_, nullptr, 0);
            is_ended_ = true;
        }
        if (!is_ended_) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    for (std::thread& reader : readers_) reader.join();
    readers_.clear();
    if (master_ >= 0) close(master_);
    master_ = -1;
    return exit_code_;
}

std::string ChildProcess::Output() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return output_;
}

std::string ChildProcess::Errors() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return errors_;
}

}  // namespace test_support
