#include "tarsel/interruption.h"

#include <signal.h>

#include <array>
#include <atomic>
#include <utility>

namespace tarsel {
namespace {

using Vantix::VantixConnection::RunContext;

constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<RunContext*> current_run{nullptr};
std::atomic<int> received_signal{0};

static_assert(std::atomic<RunContext*>::is_always_lock_free, "used in a signal handler");

void SetAction(int number, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    // No SA_RESTART: a prompt must come back from its read.
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

void RestoreDefaults() {
    for (const int number : kSignals) SetAction(number, SIG_DFL);
}

void OnSignal(int number) {
    received_signal = number;
    if (RunContext* const run = current_run) run->Cancel();
    RestoreDefaults();
}

bool IsIgnored(int number) {
    struct sigaction action {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

Interruption::Interruption(std::shared_ptr<RunContext> run) : run_(std::move(run)) {
    received_signal = 0;
    current_run = run_.get();
    for (const int number : kSignals) {
        if (!IsIgnored(number)) SetAction(number, OnSignal);
    }
    SetAction(SIGPIPE, SIG_IGN);
}

Interruption::~Interruption() {
    for (const int number : kSignals) {
        if (!IsIgnored(number)) SetAction(number, SIG_DFL);
    }
    current_run = nullptr;
}

int Interruption::Signal() {
    return received_signal;
}

}  // namespace tarsel
