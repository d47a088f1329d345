// The name under which saving, loading and printing appear in the log.
#pragma once

namespace service {

inline constexpr char kSerializeLogSource[] =
    "..\\..\\Src\\service\\update_scan_service\\serialize_update_scan";

}  // namespace service
