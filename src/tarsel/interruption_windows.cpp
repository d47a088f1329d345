#include "tarsel/interruption.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <csignal>
#include <utility>

namespace tarsel {
namespace {

using Vantix::VantixConnection::RunContext;

std::atomic<RunContext*> current_run{nullptr};
std::atomic<int> received_signal{0};

// Called on a thread of its own. The second wish to stop finds no run that could end in order any
// sooner: the system ends the process then.
BOOL WINAPI OnConsoleEvent(DWORD event) {
    const int number = event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? SIGINT : SIGTERM;
    if (received_signal.exchange(number) != 0) return FALSE;
    if (RunContext* const run = current_run) run->Cancel();
    return TRUE;
}

}  // namespace

Interruption::Interruption(std::shared_ptr<RunContext> run) : run_(std::move(run)) {
    received_signal = 0;
    current_run = run_.get();
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

Interruption::~Interruption() {
    SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    current_run = nullptr;
}

int Interruption::Signal() {
    return received_signal;
}

}  // namespace tarsel
