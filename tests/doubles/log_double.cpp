#include "doubles/log_double.h"

#include <algorithm>
#include <cassert>
#include <locale>
#include <sstream>
#include <utility>

#include "platform/log/log.h"

namespace doubles {

namespace {

LogCapture* current_capture = nullptr;

}  // namespace

LogCapture::LogCapture() {
    assert(current_capture == nullptr);
    current_capture = this;
}

LogCapture::~LogCapture() {
    current_capture = nullptr;
}

std::vector<std::string> LogCapture::Texts(int level) const {
    std::vector<std::string> texts;
    for (const LogRecord& record : records_) {
        if (record.level == level) texts.push_back(record.text);
    }
    return texts;
}

bool LogCapture::Has(int level, const std::string& part) const {
    return std::any_of(records_.begin(), records_.end(), [&](const LogRecord& record) {
        return record.level == level && record.text.find(part) != std::string::npos;
    });
}

std::vector<std::string> LogCapture::TraceSteps() const {
    std::vector<std::string> steps;
    for (const TraceRecord& trace : traces_) {
        steps.push_back(trace.tag + std::to_string(trace.step) + ":" + std::to_string(trace.code));
    }
    return steps;
}

void LogCapture::OnRecord(std::function<void(const LogRecord&)> callback) {
    on_record_ = std::move(callback);
}

void LogCapture::OnTrace(std::function<void(const TraceRecord&)> callback) {
    on_trace_ = std::move(callback);
}

void LogCapture::Take(LogRecord record) {
    if (current_capture == nullptr) return;
    current_capture->records_.push_back(record);
    if (current_capture->on_record_) current_capture->on_record_(record);
}

void LogCapture::Take(TraceRecord record) {
    if (current_capture == nullptr) return;
    current_capture->traces_.push_back(record);
    if (current_capture->on_trace_) current_capture->on_trace_(record);
}

}  // namespace doubles

namespace Vantix {

struct Log::Impl {
    int level;
    const char* source;
    int line;
    std::ostringstream text;
};

Log::Log(int level, const char* source, int line)
    : impl_(new Impl{level, source, line, std::ostringstream()}) {
    impl_->text.imbue(std::locale::classic());
}

Log::~Log() {
    const bool boolalpha = (impl_->text.flags() & std::ios_base::boolalpha) != 0;
    doubles::LogCapture::Take(
        doubles::LogRecord{impl_->level, impl_->source, impl_->line, impl_->text.str(), boolalpha});
}

std::ostream& Log::Stream() {
    return impl_->text;
}

}  // namespace Vantix

void AddDetailTimeDebugLog(int level, const char* source, int line, const char* tag, int step,
                           int code, const std::string& detail) {
    doubles::LogCapture::Take(doubles::TraceRecord{level, source, line, tag, step, code, detail});
}
