#include "platform/pci/vpd_reads.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/pci/vpd.h"

namespace Vantix::pci {
namespace {

using Clock = std::chrono::steady_clock;
using State = VpdReading::State;

// Four waits of the kernel: a thread that was given up is gone soon after.
constexpr std::size_t kPiece = 16;
constexpr std::chrono::milliseconds kLook{50};  ///< how often a wish to stop is looked for

struct Job {
    PieceReader reader;
    VpdReading reading;
    Clock::time_point started;
    enum { kWaiting, kRunning, kOver } phase = kWaiting;
};

// Owned by the caller and by each thread, so that one that was given up still has it.
struct Jobs {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Job> jobs;
    std::size_t next = 0;
    std::size_t over = 0;
    std::size_t workers = 0;

    void End(Job& job, State state) {
        if (job.phase == Job::kOver) return;
        job.phase = Job::kOver;
        job.reading.state = state;
        ++over;
    }
};

bool IsOver(Jobs& jobs, const Job& job) {
    const std::lock_guard<std::mutex> lock(jobs.mutex);
    return job.phase == Job::kOver;
}

State ReadOne(Jobs& jobs, const Job& job, std::string& bytes) {
    while (bytes.size() < kMaxVpd && !IsOver(jobs, job)) {
        const std::optional<std::string> piece =
            job.reader(bytes.size(), std::min(kPiece, kMaxVpd - bytes.size()));
        if (!piece) return State::kFailed;
        if (piece->empty()) break;
        bytes += piece->substr(0, kPiece);
        if (ParseVpd(bytes).is_finished) break;
    }
    return State::kRead;
}

State ReadOneSafely(Jobs& jobs, const Job& job, std::string& bytes) {
    try {
        return ReadOne(jobs, job, bytes);
    } catch (const std::exception&) {  // out of memory: nothing may leave a thread
        return State::kFailed;
    }
}

// Takes jobs until there are no more, or until one of them was given up: by then another thread has
// taken this one's place.
void Work(const std::shared_ptr<Jobs>& shared) {
    Jobs& jobs = *shared;
    std::unique_lock<std::mutex> lock(jobs.mutex);
    while (jobs.next < jobs.jobs.size()) {
        Job& job = jobs.jobs[jobs.next++];
        if (job.phase == Job::kOver) continue;
        job.phase = Job::kRunning;
        job.started = Clock::now();
        lock.unlock();
        std::string bytes;
        const State state = ReadOneSafely(jobs, job, bytes);
        lock.lock();
        if (job.phase == Job::kOver) return;
        job.reading.bytes = std::move(bytes);
        jobs.End(job, state);
        jobs.changed.notify_all();
    }
    --jobs.workers;
    jobs.changed.notify_all();
}

// Without threads nobody reads: the jobs that are left end as failed.
void StartWorker(const std::shared_ptr<Jobs>& jobs) {
    try {
        std::thread(Work, jobs).detach();
        ++jobs->workers;
    } catch (const std::system_error&) {
        if (jobs->workers > 0) return;
        for (Job& job : jobs->jobs) jobs->End(job, State::kFailed);
    }
}

void GiveUpSlowOnes(const std::shared_ptr<Jobs>& jobs, std::chrono::milliseconds limit) {
    for (Job& job : jobs->jobs) {
        if (job.phase != Job::kRunning || Clock::now() - job.started < limit) continue;
        jobs->End(job, State::kTooSlow);
        --jobs->workers;
        StartWorker(jobs);
    }
}

}  // namespace

std::vector<VpdReading> ReadVpds(std::vector<PieceReader> readers, const VpdLimits& limits) {
    const auto jobs = std::make_shared<Jobs>();
    for (PieceReader& reader : readers) jobs->jobs.push_back({std::move(reader), {}, {}});
    const std::chrono::milliseconds look = std::min(kLook, limits.time);
    std::unique_lock<std::mutex> lock(jobs->mutex);
    const std::size_t workers = std::min(std::max<std::size_t>(limits.parallel, 1), readers.size());
    for (std::size_t i = 0; i < workers; ++i) StartWorker(jobs);
    while (jobs->over < jobs->jobs.size()) {
        jobs->changed.wait_for(lock, look);
        GiveUpSlowOnes(jobs, limits.time);
        if (!limits.is_cancelled || !limits.is_cancelled()) continue;
        for (Job& job : jobs->jobs) jobs->End(job, State::kCancelled);
    }
    std::vector<VpdReading> readings;
    for (Job& job : jobs->jobs) readings.push_back(std::move(job.reading));
    return readings;
}

}  // namespace Vantix::pci
