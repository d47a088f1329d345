// Shows the progress of a scan on a terminal, in one line that redraws itself.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>

#include "platform/progress/progress.h"
#include "tarsel/progress_line.h"

namespace tarsel {

/// Safe to call from several threads. Silent unless `is_active`. While a stage runs, a thread of
/// its own keeps the elapsed time moving; the line is wiped when the stage ends or the bar dies.
class TerminalProgressBar : public DynamicProgressBar {
  public:
    /// `out` must outlive the bar. `is_stopping` says whether the user has asked for the end, which
    /// a long wait may put off: the line then tells that instead of what is waited for. It is asked
    /// from another thread and may be empty.
    TerminalProgressBar(std::ostream& out, bool is_active, std::function<bool()> is_stopping = {});
    ~TerminalProgressBar() override;
    TerminalProgressBar(const TerminalProgressBar&) = delete;
    TerminalProgressBar& operator=(const TerminalProgressBar&) = delete;

    void SetStageCount(int count) override;
    /// Stages below the count run; the stage after the last one ends the display.
    void SetStage(int index, const std::string& text) override;
    void SetTimerInterval(int interval) override;
    void ReportStageFailure(int index, const std::string& text) override;

    /// What the scan is waiting for at the moment.
    void ShowActivity(const std::string& text);

    /// Wipes the line and stops drawing until the next stage.
    void Clear();

  private:
    using Clock = std::chrono::steady_clock;

    void DrawRegularly();
    void Draw();  // with the mutex held
    void Wipe();  // with the mutex held

    std::ostream& out_;
    const bool is_active_;
    const std::function<bool()> is_stopping_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::thread drawer_;
    bool is_ending_ = false;
    bool is_running_ = false;
    bool is_drawn_ = false;
    int stage_count_ = 1;
    ProgressState state_;
    Clock::time_point stage_begin_;
    Clock::time_point last_draw_;
};

}  // namespace tarsel
