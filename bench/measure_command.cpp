// Runs a command several times and prints its median wall time and its largest peak memory.
//
//   measure_command RUNS COMMAND [ARGUMENT...]
//
// Prints "median_ms=... peak_kib=... status=..." (the worst exit status). The command's output is
// thrown away. Kept small itself, because a child's peak counts its parent's size at the start.

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

struct Run {
    double milliseconds = 0;
    long peak_kib = 0;
    int status = 127;
};

[[noreturn]] void BecomeCommand(char** command) {
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int stream : {0, 1, 2}) dup2(nowhere, stream);
    execvp(command[0], command);
    _exit(127);
}

Run RunOnce(char** command) {
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) BecomeCommand(command);
    Run run;
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child) return run;
    const std::chrono::duration<double, std::milli> spent =
        std::chrono::steady_clock::now() - begin;
    run.milliseconds = spent.count();
    run.peak_kib = usage.ru_maxrss;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128;
    return run;
}

}  // namespace

int main(int argc, char** argv) {
    int runs = 0;
    if (argc >= 3) std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), runs);
    if (runs < 1) {
        std::fputs("usage: measure_command RUNS COMMAND [ARGUMENT...]\n", stderr);
        return 2;
    }
    std::vector<double> times;
    Run worst{0, 0, 0};
    for (int n = 0; n < runs; ++n) {
        const Run run = RunOnce(argv + 2);
        times.push_back(run.milliseconds);
        worst.peak_kib = std::max(worst.peak_kib, run.peak_kib);
        worst.status = std::max(worst.status, run.status);
    }
    std::sort(times.begin(), times.end());
    std::printf("median_ms=%.2f peak_kib=%ld status=%d\n", times[times.size() / 2], worst.peak_kib,
                worst.status);
    return 0;
}
