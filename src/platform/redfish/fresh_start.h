// Has a management controller only just started, so that its inventory may still be growing?
#pragma once

#include <boost/json.hpp>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Vantix::redfish {

/// Seconds since 1970 of an ISO 8601 date and time with offset, as Redfish writes them
/// ("2025-03-11T08:15:30+01:00", "...Z", fractions allowed); nothing for any other text.
std::optional<std::int64_t> SecondsOfDateTime(std::string_view text);

/// True when the Manager resource (DSP8010: DateTime, LastResetTime) says that it was reset less
/// than three minutes ago by its own clock.
bool IsFreshlyStarted(const boost::json::object& manager);

}  // namespace Vantix::redfish
