// A program for tests of the runner: does what its arguments say, one after the other, and tells
// nothing else. Writes no line ends, which Windows would change.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "transport/process/joined_command_line.h"

namespace {

using Words = std::vector<std::string>;

/// Takes what it needs from the front of the words.
using Action = std::function<void(Words&)>;

std::string Take(Words& words) {
    if (words.empty()) std::exit(99);
    std::string word = words.front();
    words.erase(words.begin());
    return word;
}

void Say(std::FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

void SayVariables() {
    for (char** variable = _environ; *variable != nullptr; ++variable) {
        Say(stdout, std::string("[") + *variable + "]");
    }
}

void SayFile(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return Say(stdout, "no file");
    for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) std::putchar(byte);
    std::fclose(file);
    std::fflush(stdout);
}

void Append(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "ab");
    if (file == nullptr) return;
    std::fputs("more", file);
    std::fclose(file);
}

// Another one of this program that sleeps, with the same streams; tells its number.
void StartSleeper() {
    char own[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, own, MAX_PATH);
    std::string line = Vantix::transport::JoinedCommandLine({own, "sleep", "600000"});
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION started{};
    if (CreateProcessA(own, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                       &started) == 0) {
        std::exit(98);
    }
    Say(stdout, std::to_string(started.dwProcessId));
}

const std::map<std::string, Action> kActions = {
    {"out", [](Words& words) { Say(stdout, Take(words)); }},
    {"error", [](Words& words) { Say(stderr, Take(words)); }},
    {"out-bytes", [](Words& words) { Say(stdout, std::string(std::stoul(Take(words)), 'a')); }},
    {"error-bytes", [](Words& words) { Say(stderr, std::string(std::stoul(Take(words)), 'b')); }},
    {"write-without-end",
     [](Words&) {
         while (true) Say(stdout, std::string(4096, 'y'));
     }},
    {"close-streams",
     [](Words&) {
         std::fclose(stdout);
         std::fclose(stderr);
     }},
    {"read-input", [](Words&) { Say(stdout, std::getchar() == EOF ? "nothing" : "something"); }},
    {"words",
     [](Words& words) {
         while (!words.empty()) Say(stdout, "<" + Take(words) + ">");
     }},
    {"variables", [](Words&) { SayVariables(); }},
    {"file", [](Words& words) { SayFile(Take(words)); }},
    {"append-to", [](Words& words) { Append(Take(words)); }},
    {"start-sleeper", [](Words&) { StartSleeper(); }},
    {"command-line", [](Words&) { Say(stdout, GetCommandLineA()); }},
    {"own-number", [](Words&) { Say(stdout, std::to_string(GetCurrentProcessId())); }},
    {"sleep", [](Words& words) { Sleep(std::stoul(Take(words))); }},
    {"exit", [](Words& words) { ExitProcess(std::stoul(Take(words))); }},
};

}  // namespace

int main(int count, char** arguments) {
    Words words(arguments + 1, arguments + count);
    while (!words.empty()) {
        const auto action = kActions.find(Take(words));
        if (action == kActions.end()) return 97;
        action->second(words);
    }
    return 0;
}
