#include "platform/log/log.h"

#include <chrono>
#include <locale>
#include <map>
#include <sstream>

#include "platform/log/log_sink.h"

namespace Vantix {
namespace {

// A stream without a buffer is in a failed state for good: it drops values before formatting them.
// One a thread, because manipulators still change its flags.
std::ostream& SwallowingStream() {
    thread_local std::ostream stream(nullptr);
    return stream;
}

}  // namespace

struct Log::Impl {
    int level;
    const char* source;
    int line;
    std::ostringstream text;
};

Log::Log(int level, const char* source, int line) {
    if (!IsLogLevelWanted(level)) return;
    impl_ = std::make_unique<Impl>();
    impl_->level = level;
    impl_->source = source;
    impl_->line = line;
    impl_->text.imbue(std::locale::classic());
}

Log::~Log() {
    if (!impl_) return;
    try {
        WriteLogRecord(impl_->level, impl_->source, impl_->line, impl_->text.str());
    } catch (const std::exception&) {
        // Out of memory while copying the text: the record is lost, the scan goes on.
    }
}

std::ostream& Log::Stream() {
    return impl_ ? impl_->text : SwallowingStream();
}

}  // namespace Vantix

namespace {

using SteadyClock = std::chrono::steady_clock;

// Begin times of the steps that this thread has open.
std::map<int, SteadyClock::time_point>& OpenSteps() {
    thread_local std::map<int, SteadyClock::time_point> steps;
    return steps;
}

}  // namespace

void AddDetailTimeDebugLog(int level, const char* source, int line, const char* tag, int step,
                           int code, const std::string& detail) {
    if (!Vantix::IsLogLevelWanted(level)) return;
    const std::string tag_text = tag == nullptr ? "" : tag;
    Vantix::Log log(level, source, line);
    log.Stream() << tag_text << " step " << step << " code " << code;
    if (tag_text == "[B]") {
        OpenSteps()[step] = SteadyClock::now();
    } else if (const auto begin = OpenSteps().find(step); begin != OpenSteps().end()) {
        const auto elapsed = SteadyClock::now() - begin->second;
        log.Stream() << " after "
                     << std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count()
                     << " ms";
        OpenSteps().erase(begin);
    }
    if (!detail.empty()) log.Stream() << " " << detail;
}
