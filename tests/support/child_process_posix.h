// Runs a program for a test: its own environment, collected output, signals, a terminal if wanted.
//
// Deliberately not here: what the output means.
#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace test_support {

struct ChildSetup {
    std::vector<std::string> arguments;              ///< the program's path first
    std::map<std::string, std::string> environment;  ///< the whole of it
    std::string input;                               ///< what its standard input holds
    /// The standard input stays open after `input` until CloseInput.
    bool keeps_input_open = false;
    /// Reading end closed before the program starts: every write to the standard output fails.
    bool has_closed_output_pipe = false;
    /// A terminal of its own; the standard error output goes there, too. Its text and whatever the
    /// program shows on it is collected as error output.
    bool has_terminal = false;
    std::string folder;  ///< current folder; empty: the test's
};

/// Starts in the constructor, is killed and collected in the destructor at the latest. All waits
/// end after 60 seconds.
class ChildProcess {
  public:
    explicit ChildProcess(ChildSetup setup);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t Id() const { return id_; }

    /// True when the text came up on the standard (error) output before the program ended.
    bool WaitForOutput(const std::string& text);
    bool WaitForErrors(const std::string& text);

    void Type(const std::string& text) const;  ///< on its terminal or its open standard input
    void CloseInput();
    /// True when its terminal shows what is typed.
    [[nodiscard]] bool TerminalEchoes() const;
    void Signal(int number) const;

    /// Waits for the end: the exit code, or 1000 plus the signal that killed it; -1 when it had to
    /// be killed because it did not end.
    int Wait();

    [[nodiscard]] std::string Output() const;
    [[nodiscard]] std::string Errors() const;

  private:
    void Collect(int descriptor, std::string& text);
    bool WaitFor(const std::string& text, const std::string& part);
    void Start(int input, int output, int errors, const std::string& terminal);
    bool HasEnded();

    ChildSetup setup_;
    pid_t id_ = -1;
    int input_ = -1;
    int master_ = -1;
    int exit_code_ = -1;
    bool is_ended_ = false;
    mutable std::mutex mutex_;
    std::condition_variable more_;
    int open_streams_ = 0;
    std::string output_;
    std::string errors_;
    std::vector<std::thread> readers_;
};

}  // namespace test_support
