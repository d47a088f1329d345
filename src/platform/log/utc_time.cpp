#include "platform/log/utc_time.h"

#include <cstdio>

namespace Vantix {
namespace {

using std::chrono::system_clock;

// The C library's time functions are avoided: they differ between systems and share state
// between threads.
std::string DateAndTime(system_clock::time_point time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
    char text[64];
    const int length = std::snprintf(
        text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
        static_cast<int>(clock.seconds().count()));
    return length > 0 ? std::string(text) : std::string();
}

}  // namespace

std::string UtcSecondsText(system_clock::time_point time) {
    return DateAndTime(time) + "Z";
}

std::string UtcMillisecondsText(system_clock::time_point time) {
    const auto second = std::chrono::floor<std::chrono::seconds>(time);
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(time - second).count();
    char text[16];
    std::snprintf(text, sizeof text, ".%03dZ", static_cast<int>(rest));
    return DateAndTime(time) + text;
}

}  // namespace Vantix
