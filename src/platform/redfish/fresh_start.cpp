#include "platform/redfish/fresh_start.h"

#include <charconv>
#include <chrono>

#include "transport/redfish/json_fields.h"

namespace Vantix::redfish {

namespace {

constexpr std::int64_t kFreshSeconds = 180;

std::optional<int> Digits(std::string_view text, std::size_t from, std::size_t count) {
    if (text.size() < from + count) return std::nullopt;
    int number = 0;
    const char* first = text.data() + from;
    const auto read = std::from_chars(first, first + count, number);
    if (read.ec != std::errc() || read.ptr != first + count) return std::nullopt;
    return number;
}

// "Z", "+01:00" or "-0530" at the end of the text.
std::optional<int> OffsetSeconds(std::string_view zone) {
    if (zone == "Z" || zone == "z") return 0;
    if (zone.size() < 5 || (zone.front() != '+' && zone.front() != '-')) return std::nullopt;
    const auto hours = Digits(zone, 1, 2);
    const auto minutes = Digits(zone, zone.size() - 2, 2);
    if (!hours || !minutes) return std::nullopt;
    const int seconds = *hours * 3600 + *minutes * 60;
    return zone.front() == '-' ? -seconds : seconds;
}

}  // namespace

std::optional<std::int64_t> SecondsOfDateTime(std::string_view text) {
    const auto year = Digits(text, 0, 4);
    const auto month = Digits(text, 5, 2);
    const auto day = Digits(text, 8, 2);
    const auto hour = Digits(text, 11, 2);
    const auto minute = Digits(text, 14, 2);
    const auto second = Digits(text, 17, 2);
    if (!year || !month || !day || !hour || !minute || !second) return std::nullopt;
    const std::size_t zone = text.find_first_of("Zz+-", 19);
    if (zone == std::string_view::npos) return std::nullopt;
    const auto offset = OffsetSeconds(text.substr(zone));
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (!offset || !date.ok()) return std::nullopt;
    const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
    return days * 86400 + *hour * 3600 + *minute * 60 + *second - *offset;
}

bool IsFreshlyStarted(const boost::json::object& manager) {
    const auto now = SecondsOfDateTime(transport::json::Text(manager, "DateTime"));
    const auto reset = SecondsOfDateTime(transport::json::Text(manager, "LastResetTime"));
    return now && reset && *now >= *reset && *now - *reset < kFreshSeconds;
}

}  // namespace Vantix::redfish
