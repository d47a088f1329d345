// Replaces the log and the timing trace: keeps what would have been written.
//
// Deliberately not here: levels that are switched off. Every record is kept, whatever its level.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace doubles {

struct LogRecord {
    int level;
    std::string source;
    int line;
    std::string text;
    bool boolalpha_left_set = false;  ///< the writer did not undo boolalpha
};

struct TraceRecord {
    int level;
    std::string source;
    int line;
    std::string tag;
    int step;
    int code;
    std::string detail;
};

/// What is logged while the object lives, in order. One object at a time; without one, records are
/// dropped.
class LogCapture {
  public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    [[nodiscard]] const std::vector<LogRecord>& Records() const { return records_; }
    [[nodiscard]] const std::vector<TraceRecord>& Traces() const { return traces_; }

    /// The texts of the records of one level, in order.
    [[nodiscard]] std::vector<std::string> Texts(int level) const;

    /// True when a record of that level contains `part`.
    [[nodiscard]] bool Has(int level, const std::string& part) const;

    /// The trace in short: "[B]15:0", "[E]15:0" (tag, step, code).
    [[nodiscard]] std::vector<std::string> TraceSteps() const;

    /// Called for every record (and trace entry) the moment it is written: to see it between
    /// expected platform calls.
    void OnRecord(std::function<void(const LogRecord&)> callback);
    void OnTrace(std::function<void(const TraceRecord&)> callback);

    /// For the replaced functions.
    static void Take(LogRecord record);
    static void Take(TraceRecord record);

  private:
    std::vector<LogRecord> records_;
    std::vector<TraceRecord> traces_;
    std::function<void(const LogRecord&)> on_record_;
    std::function<void(const TraceRecord&)> on_trace_;
};

}  // namespace doubles
