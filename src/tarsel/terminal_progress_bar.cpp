#include "tarsel/terminal_progress_bar.h"

#include <utility>

#include "tarsel/terminal.h"

namespace tarsel {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kTick(500);
constexpr milliseconds kShortestGap(100);  // between two drawings for an activity
constexpr int kTenthsPerSecond = 10;
constexpr const char* kWipe = "\r\x1B[K";
constexpr const char* kStopping = "interrupted, ending; once more ends at once";

}  // namespace

TerminalProgressBar::TerminalProgressBar(std::ostream& out, bool is_active,
                                         std::function<bool()> is_stopping)
    : out_(out), is_active_(is_active), is_stopping_(std::move(is_stopping)) {
    if (is_active_) drawer_ = std::thread([this] { DrawRegularly(); });
}

TerminalProgressBar::~TerminalProgressBar() {
    if (!drawer_.joinable()) return;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        is_ending_ = true;
        is_running_ = false;
        Wipe();
    }
    wake_.notify_all();
    drawer_.join();
}

void TerminalProgressBar::SetStageCount(int count) {
    const std::lock_guard<std::mutex> lock(mutex_);
    stage_count_ = count;
}

void TerminalProgressBar::SetStage(int index, const std::string& text) {
    if (index >= stage_count_) {
        Clear();
        return;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    state_ = ProgressState();
    state_.stage = text;
    stage_begin_ = Clock::now();
    is_running_ = true;
    Draw();
}

void TerminalProgressBar::SetTimerInterval(int interval) {
    const std::lock_guard<std::mutex> lock(mutex_);
    state_.estimated_seconds = interval / kTenthsPerSecond;
    Draw();
}

void TerminalProgressBar::ReportStageFailure(int /*index*/, const std::string& /*text*/) {
    Clear();  // the failure itself is told as a sentence of its own
}

void TerminalProgressBar::ShowActivity(const std::string& text) {
    const std::lock_guard<std::mutex> lock(mutex_);
    state_.activity = text;
    if (Clock::now() - last_draw_ >= kShortestGap) Draw();
}

void TerminalProgressBar::Clear() {
    const std::lock_guard<std::mutex> lock(mutex_);
    is_running_ = false;
    Wipe();
}

void TerminalProgressBar::DrawRegularly() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!is_ending_) {
        wake_.wait_for(lock, kTick, [this] { return is_ending_; });
        if (is_running_) Draw();
    }
}

void TerminalProgressBar::Draw() {
    if (!is_active_ || !is_running_) return;
    last_draw_ = Clock::now();
    const auto elapsed =
        std::chrono::duration_cast<std::chrono::seconds>(last_draw_ - stage_begin_);
    state_.elapsed_seconds = static_cast<int>(elapsed.count());
    if (is_stopping_ && is_stopping_()) state_.activity = kStopping;
    out_ << kWipe << ProgressLine(state_, TerminalColumns()) << std::flush;
    is_drawn_ = true;
}

void TerminalProgressBar::Wipe() {
    if (is_drawn_) out_ << kWipe << std::flush;
    is_drawn_ = false;
}

}  // namespace tarsel
