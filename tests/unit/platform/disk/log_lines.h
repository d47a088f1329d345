// What is logged while the object lives, at all levels.
#pragma once

#include <string>

#include "platform/log/log_settings.h"
#include "support/temporary_folder.h"

namespace disk_test {

class LogLines {
  public:
    LogLines() {
        Vantix::LogSettings settings;
        settings.file = folder_.Path("test.log");
        settings.file_level = 4;
        Vantix::ConfigureLog(settings);
    }
    ~LogLines() { Vantix::ShutdownLog(); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    [[nodiscard]] std::string Text() const { return folder_.Read("test.log"); }

  private:
    test_support::TemporaryFolder folder_;
};

}  // namespace disk_test
