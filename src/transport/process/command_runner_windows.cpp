// Programs of Windows. Each runs in a job of its own, without a window and without a console's
// input, and is ended with all its children.

#include "transport/process/command_runner.h"

#include <windows.h>

#include <filesystem>
#include <memory>
#include <utility>

#include "transport/process/child_pipe_windows.h"
#include "transport/process/joined_command_line.h"
#include "transport/process/passed_text_file_windows.h"

namespace Vantix::transport {
namespace {

using std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

constexpr DWORD kLookAgainMilliseconds = 10;
constexpr milliseconds kGraceForStreams{500};
constexpr UINT kEndedByUs = 0xE0FFu;
constexpr DWORD kExceptionCodes = 0xC0000000u;

// Paths and arguments are UTF-8 everywhere in this system.
std::wstring Wide(const std::string& text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}

std::string SystemWords(const char* what) {
    return std::string(what) + ": Windows error " + std::to_string(GetLastError());
}

// The folders of PATH and the system's own; never the current one.
std::wstring FindProgram(const std::string& program) {
    const std::wstring name = Wide(program);
    if (program.find_first_of("/\\") != std::string::npos) {
        const DWORD kind = GetFileAttributesW(name.c_str());
        const bool is_file =
            kind != INVALID_FILE_ATTRIBUTES && (kind & FILE_ATTRIBUTE_DIRECTORY) == 0;
        return is_file ? name : std::wstring();
    }
    std::wstring folders(32768, L'\0');
    folders.resize(GetEnvironmentVariableW(L"PATH", folders.data(), 32768));
    std::wstring found(32768, L'\0');
    wchar_t* file_part = nullptr;
    found.resize(SearchPathW(folders.empty() ? L"\\" : folders.c_str(), name.c_str(), L".exe",
                             32768, found.data(), &file_part));
    return found;
}

std::wstring Variable(const wchar_t* name) {
    wchar_t value[32768] = {};
    const DWORD length = GetEnvironmentVariableW(name, value, 32768);
    return length == 0 || length >= 32768 ? std::wstring() : std::wstring(value, length);
}

// "NAME=value" texts, each ended by a NUL, and one more NUL.
std::wstring EnvironmentOf(const Command& command) {
    std::wstring block;
    for (const wchar_t* setting : {L"LC_ALL=C", L"LANGUAGE=C", L"TZ=UTC0"}) {
        block += std::wstring(setting) + L'\0';
    }
    for (const wchar_t* name : {L"PATH", L"SystemRoot", L"TEMP", L"TMP", L"USERPROFILE"}) {
        const std::wstring value = Variable(name);
        if (!value.empty()) block += std::wstring(name) + L'=' + value + L'\0';
    }
    for (const auto& [name, value] : command.environment) {
        block += Wide(name) + L'=' + Wide(value) + L'\0';
    }
    return block + L'\0';
}

// Which handles the program inherits: these and no others that this process has open.
class InheritedHandles {
  public:
    InheritedHandles(HANDLE input, HANDLE output, HANDLE error_output)
        : handles_{input, output, error_output} {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_ = std::make_unique<std::byte[]>(size);
        auto* list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.get());
        if (InitializeProcThreadAttributeList(list, 1, 0, &size) == 0) return;
        list_ = list;
        UpdateProcThreadAttribute(list_, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_,
                                  sizeof(handles_), nullptr, nullptr);
    }
    ~InheritedHandles() {
        if (list_ != nullptr) DeleteProcThreadAttributeList(list_);
    }
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;

    [[nodiscard]] STARTUPINFOEXW StartupInfo() const {
        STARTUPINFOEXW info{};
        info.StartupInfo.cb = sizeof(info);
        info.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
        info.StartupInfo.hStdInput = handles_[0];
        info.StartupInfo.hStdOutput = handles_[1];
        info.StartupInfo.hStdError = handles_[2];
        info.lpAttributeList = list_;
        return info;
    }

  private:
    HANDLE handles_[3];
    std::unique_ptr<std::byte[]> memory_;
    LPPROC_THREAD_ATTRIBUTE_LIST list_ = nullptr;
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
    bool Launch(const std::wstring& program, HANDLE input);
    bool MakeTexts();
    [[nodiscard]] std::wstring CommandLine(const std::wstring& program) const;
    bool Fail(const char* what);
    void Watch();
    [[nodiscard]] bool MustEnd();
    bool Drain();
    void TakeTheRest();

    const Command& command_;
    CommandOutcome outcome_;
    ChildPipe output_;
    ChildPipe error_output_;
    OwnedHandle process_;
    OwnedHandle job_;
    std::vector<std::unique_ptr<PassedTextFile>> texts_;
    SteadyClock::time_point deadline_;
};

bool ChildProcess::Fail(const char* what) {
    outcome_.end = CommandEnd::kNotStarted;
    outcome_.text = SystemWords(what);
    return false;
}

bool ChildProcess::MakeTexts() {
    for (const std::string& text : command_.passed_texts) {
        texts_.push_back(std::make_unique<PassedTextFile>(text));
        if (!texts_.back()->IsMade()) return false;
    }
    return true;
}

std::wstring ChildProcess::CommandLine(const std::wstring& program) const {
    std::vector<std::string> words = {"?"};
    words.insert(words.end(), command_.arguments.begin(), command_.arguments.end());
    for (std::size_t index = 0; index < texts_.size(); ++index) {
        const std::u8string path = std::filesystem::path(texts_[index]->Path()).u8string();
        for (std::string& word : words) {
            if (word == PassedTextPath(index)) word.assign(path.begin(), path.end());
        }
    }
    words.erase(words.begin());
    const std::wstring arguments = Wide(JoinedCommandLine(words));
    return L'"' + program + L'"' + (arguments.empty() ? L"" : L" ") + arguments;
}

bool ChildProcess::Start() {
    const std::wstring program = FindProgram(command_.program);
    if (program.empty()) {
        outcome_.end = CommandEnd::kNotFound;
        outcome_.text = "there is no program " + command_.program;
        return false;
    }
    SECURITY_ATTRIBUTES inherited{};
    inherited.nLength = sizeof(inherited);
    inherited.bInheritHandle = TRUE;
    const OwnedHandle nothing(CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                          &inherited, OPEN_EXISTING, 0, nullptr));
    if (!nothing.IsOpen()) return Fail("input");
    if (!output_.Open() || !error_output_.Open()) return Fail("pipe");
    if (!MakeTexts()) return Fail("text file");
    deadline_ = SteadyClock::now() + command_.time_limit;
    return Launch(program, nothing.Get());
}

bool ChildProcess::Launch(const std::wstring& program, HANDLE input) {
    *job_.Slot() = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job_.Get(), JobObjectExtendedLimitInformation, &limits, sizeof(limits));
    const InheritedHandles handles(input, output_.WriteEnd(), error_output_.WriteEnd());
    STARTUPINFOEXW startup = handles.StartupInfo();
    std::wstring line = CommandLine(program);
    std::wstring environment = EnvironmentOf(command_);
    PROCESS_INFORMATION started{};
    const DWORD flags = CREATE_NO_WINDOW | CREATE_SUSPENDED | CREATE_UNICODE_ENVIRONMENT |
                        EXTENDED_STARTUPINFO_PRESENT | CREATE_NEW_PROCESS_GROUP;
    const BOOL is_started =
        CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, flags,
                       environment.data(), nullptr, &startup.StartupInfo, &started);
    if (is_started == 0) return Fail("start");
    *process_.Slot() = started.hProcess;
    // In the job before its first instruction, so that no child of it escapes.
    AssignProcessToJobObject(job_.Get(), process_.Get());
    ResumeThread(started.hThread);
    CloseHandle(started.hThread);
    output_.CloseWriteEnd();
    error_output_.CloseWriteEnd();
    return true;
}

bool ChildProcess::Drain() {
    const bool is_output = output_.Drain(command_.max_output_bytes);
    const bool is_error = error_output_.Drain(command_.max_output_bytes);
    return is_output || is_error;
}

void ChildProcess::Watch() {
    outcome_.end = CommandEnd::kExited;
    while (WaitForSingleObject(process_.Get(), Drain() ? 0 : kLookAgainMilliseconds) ==
           WAIT_TIMEOUT) {
        if (!MustEnd()) continue;
        TerminateJobObject(job_.Get(), kEndedByUs);
        WaitForSingleObject(process_.Get(), INFINITE);
        break;
    }
    TakeTheRest();
    DWORD status = 0;
    if (outcome_.end != CommandEnd::kExited || GetExitCodeProcess(process_.Get(), &status) == 0) {
        return;
    }
    // A program that crashed ends with the code of its exception.
    if ((status & kExceptionCodes) == kExceptionCodes) {
        outcome_.end = CommandEnd::kSignalled;
    } else {
        outcome_.exit_status = static_cast<int>(status);
    }
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

// A child left behind may hold the pipes open for ever.
void ChildProcess::TakeTheRest() {
    const auto until = SteadyClock::now() + kGraceForStreams;
    while (!(output_.IsAtEnd() && error_output_.IsAtEnd()) && SteadyClock::now() < until) {
        if (!Drain()) Sleep(1);
    }
    TerminateJobObject(job_.Get(), kEndedByUs);
}

class WindowsCommandRunner : public CommandRunner {
  public:
    CommandOutcome Run(const Command& command) override { return ChildProcess(command).Run(); }
};

}  // namespace

// Not a path yet: the runner puts that of the text's file in its place.
std::string PassedTextPath(std::size_t index) {
    return "<passed text " + std::to_string(index) + ">";
}

CommandRunner& SystemCommandRunner() {
    static WindowsCommandRunner runner;
    return runner;
}

}  // namespace Vantix::transport
