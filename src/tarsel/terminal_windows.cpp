#include "tarsel/terminal.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/os/wide_text_windows.h"
#include "tarsel/private_file_windows.h"

namespace tarsel {
namespace {

constexpr std::size_t kUsualColumns = 80;
constexpr int kStandardInput = 0;
constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;

class OwnedHandle {
  public:
    explicit OwnedHandle(HANDLE handle) : handle_(handle) {}
    ~OwnedHandle() {
        if (IsOpen()) CloseHandle(handle_);
    }
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;
    [[nodiscard]] HANDLE Get() const { return handle_; }
    [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

  private:
    HANDLE handle_;
};

OwnedHandle OpenConsole(const wchar_t* name) {
    return OwnedHandle(CreateFileW(name, GENERIC_READ | GENERIC_WRITE,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                   nullptr));
}

// Switches the echo of a console off for as long as it lives.
class SilentConsole {
  public:
    explicit SilentConsole(HANDLE input) : input_(input) {
        is_silent_ = GetConsoleMode(input_, &former_) != 0 &&
                     SetConsoleMode(input_, (former_ | ENABLE_LINE_INPUT) &
                                                ~static_cast<DWORD>(ENABLE_ECHO_INPUT)) != 0;
    }
    ~SilentConsole() {
        if (is_silent_) SetConsoleMode(input_, former_);
    }
    SilentConsole(const SilentConsole&) = delete;
    SilentConsole& operator=(const SilentConsole&) = delete;
    [[nodiscard]] bool IsSilent() const { return is_silent_; }

  private:
    HANDLE input_;
    DWORD former_ = 0;
    bool is_silent_ = false;
};

bool WriteConsoleText(HANDLE console, std::string_view text) {
    const std::wstring wide = Vantix::WideOf(std::string(text));
    std::size_t done = 0;
    while (done < wide.size()) {
        DWORD written = 0;
        if (WriteConsoleW(console, wide.data() + done, static_cast<DWORD>(wide.size() - done),
                          &written, nullptr) == 0 ||
            written == 0) {
            return false;
        }
        done += written;
    }
    return true;
}

ReadState ReadConsoleLine(HANDLE input, std::string& line) {
    std::wstring wide(kLongestPassword + 2, L'\0');
    DWORD count = 0;
    if (ReadConsoleW(input, wide.data(), static_cast<DWORD>(wide.size()), &count, nullptr) == 0) {
        return ReadState::kFailed;
    }
    // Ctrl-C ends the reading without a letter.
    if (count == 0) return ReadState::kInterrupted;
    std::wstring_view text(wide.data(), count);
    const bool is_whole = text.ends_with(L'\n');
    while (text.ends_with(L'\n') || text.ends_with(L'\r')) text.remove_suffix(1);
    line = Vantix::Utf8Of(std::wstring(text));
    SecureZeroMemory(wide.data(), wide.size() * sizeof(wchar_t));
    return is_whole ? ReadState::kOk : ReadState::kTooLong;
}

bool WriteAll(int descriptor, std::string_view text) {
    constexpr std::size_t kStep = 32768;
    while (!text.empty()) {
        const auto size = static_cast<unsigned>(std::min(text.size(), kStep));
        const int written = _write(descriptor, text.data(), size);
        if (written <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// Byte by byte: whatever follows the line belongs to somebody else. `read` gives 1, 0 at the end,
// or less than 0.
template <typename Read>
ReadState ReadLine(const Read& read, std::string& line) {
    line.clear();
    line.reserve(kLongestPassword);  // no copies of a secret left behind by growing
    char letter = 0;
    for (;;) {
        const int count = read(letter);
        if (count < 0) return ReadState::kFailed;
        if (count == 0 || letter == '\n') break;
        if (line.size() == kLongestPassword) return ReadState::kTooLong;
        line += letter;
    }
    if (line.ends_with('\r')) line.pop_back();
    return line.empty() ? ReadState::kEmpty : ReadState::kOk;
}

bool IsFolder(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION facts{};
    return GetFileInformationByHandle(file, &facts) != 0 &&
           (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// The run-time library keeps a copy of the environment, and the system its own.
void WipeEnvironmentVariable(const char* name, const std::wstring& wide_name, DWORD size) {
    if (char* const copy = std::getenv(name)) SecureZeroMemory(copy, std::strlen(copy));
    SetEnvironmentVariableW(wide_name.c_str(), std::wstring(size - 1, L'*').c_str());
    _wputenv_s(wide_name.c_str(), L"");
    SetEnvironmentVariableW(wide_name.c_str(), nullptr);
}

}  // namespace

bool IsErrorOutputInteractive() {
    DWORD mode = 0;
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

std::size_t TerminalColumns() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) == 0) {
        return kUsualColumns;
    }
    const int columns = info.srWindow.Right - info.srWindow.Left + 1;
    return columns > 0 ? static_cast<std::size_t>(columns) : kUsualColumns;
}

ReadState PromptWithoutEcho(const std::string& prompt, const std::function<bool()>& is_interrupted,
                            std::string& line) {
    const OwnedHandle input = OpenConsole(L"CONIN$");
    const OwnedHandle output = OpenConsole(L"CONOUT$");
    if (!input.IsOpen() || !output.IsOpen()) return ReadState::kMissing;
    if (is_interrupted()) return ReadState::kInterrupted;
    const SilentConsole silence(input.Get());
    if (!silence.IsSilent() || !WriteConsoleText(output.Get(), prompt)) return ReadState::kFailed;
    const ReadState state = ReadConsoleLine(input.Get(), line);
    WriteConsoleText(output.Get(), "\r\n");
    return is_interrupted() ? ReadState::kInterrupted : state;
}

ReadState ReadPrivateFileLine(const std::string& file, std::string& line) {
    // With that flag folders open, too, and are told from names that do not exist.
    const OwnedHandle handle(CreateFileW(Vantix::WideOf(file).c_str(), GENERIC_READ | READ_CONTROL,
                                         FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                         FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!handle.IsOpen()) return ReadState::kMissing;
    if (IsFolder(handle.Get())) return ReadState::kFailed;
    if (IsOpenToOthers(handle.Get())) return ReadState::kTooOpen;
    const auto read = [&handle](char& letter) {
        DWORD count = 0;
        const bool is_read = ReadFile(handle.Get(), &letter, 1, &count, nullptr) != 0;
        return is_read ? static_cast<int>(count) : -1;
    };
    return ReadLine(read, line);
}

std::string HowToCloseToOthers() {
    return "run icacls on it with /inheritance:r /grant:r %USERNAME%:F";
}

ReadState ReadDescriptorLine(int descriptor, std::string& line) {
    if (_get_osfhandle(descriptor) == -1) return ReadState::kMissing;
    return ReadLine([descriptor](char& letter) { return _read(descriptor, &letter, 1); }, line);
}

int StandardInputDescriptor() {
    return kStandardInput;
}

bool IsStandardInputTerminal() {
    return _isatty(kStandardInput) != 0;
}

bool TakeEnvironmentVariable(const char* name, std::string& value) {
    const std::wstring wide_name = Vantix::WideOf(name);
    const DWORD size = GetEnvironmentVariableW(wide_name.c_str(), nullptr, 0);
    if (size == 0) return false;
    std::wstring wide(size, L'\0');
    const DWORD length = GetEnvironmentVariableW(wide_name.c_str(), wide.data(), size);
    wide.resize(std::min(length, size));
    value = Vantix::Utf8Of(wide);
    SecureZeroMemory(wide.data(), wide.size() * sizeof(wchar_t));
    WipeEnvironmentVariable(name, wide_name, size);
    return !value.empty();
}

void OccupyStandardDescriptors() {
    const auto occupy = [](int descriptor, int flags) {
        if (_get_osfhandle(descriptor) >= 0) return;
        const int opened = _open("NUL", flags);
        if (opened < 0 || opened == descriptor) return;
        _dup2(opened, descriptor);
        _close(opened);
    };
    occupy(kStandardInput, _O_WRONLY);
    occupy(kStandardOutput, _O_RDONLY);
    occupy(kStandardError, _O_RDONLY);
    // Lines end as on every system; a console shows them just the same.
    _setmode(kStandardError, _O_BINARY);
}

// A console takes UTF-16 whole; written byte by byte, letters of several bytes would break.
WriteState WriteStandardOutput(const std::string& text) {
    DWORD mode = 0;
    const HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
    if (GetConsoleMode(console, &mode) != 0) {
        return WriteConsoleText(console, text) ? WriteState::kOk : WriteState::kFailed;
    }
    // Pipes and files get the bytes as on every system, without an added CR.
    _setmode(kStandardOutput, _O_BINARY);
    if (WriteAll(kStandardOutput, text)) return WriteState::kOk;
    return errno == EPIPE || errno == EINVAL ? WriteState::kReaderGone : WriteState::kFailed;
}

void WipeText(std::string& text) {
    SecureZeroMemory(text.data(), text.size());
    text.clear();
}

}  // namespace tarsel
