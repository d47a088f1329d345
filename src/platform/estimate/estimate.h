// How long a scan will take, from what earlier scans of the same kind of machine took.
#pragma once

#include <string>

#include "common/export.h"

class TARSEL_EXPORT TimeEstimation {
  public:
    static TimeEstimation* getInstance();

    /// Estimated seconds of a scan through the BMC: the remembered duration for `key` and
    /// `machine_type`, else 60.
    int GetScanOOBTimeEstimation(const std::string& key, const std::string& machine_type);

    /// Estimated seconds of an in-band scan, of which `duration_seconds` have passed: the
    /// remembered duration for `mt_arch` and `os`, else 120; never less than what has passed.
    int GetScanInbandTimeEstimation(const std::string& mt_arch, const std::string& os,
                                    int duration_seconds);

    /// The key under which RememberScan keeps what the two questions above look for; for in-band
    /// scans of `mt_arch` and `os`.
    static std::string KeyFor(const std::string& key, const std::string& machine_type);

    /// Remembers how long a finished scan took; durations below a second are ignored. `key` comes
    /// from KeyFor. The file (see UseFile) is rewritten, its folder made; failures are ignored.
    void RememberScan(const std::string& key, int duration_seconds);

    /// The file that keeps durations between scans; until set, nothing is remembered.
    void UseFile(const std::string& file);

  private:
    std::string file_;
};
