#include "platform/estimate/estimate.h"

#include "doubles/platform_double.h"

using doubles::PlatformDouble;

TimeEstimation* TimeEstimation::getInstance() {
    static TimeEstimation instance;
    return &instance;
}

int TimeEstimation::GetScanOOBTimeEstimation(const std::string& key,
                                             const std::string& machine_type) {
    return PlatformDouble::Current().GetScanOOBTimeEstimation(key, machine_type);
}

int TimeEstimation::GetScanInbandTimeEstimation(const std::string& mt_arch, const std::string& os,
                                                int duration_seconds) {
    return PlatformDouble::Current().GetScanInbandTimeEstimation(mt_arch, os, duration_seconds);
}

void TimeEstimation::RememberScan(const std::string& key, int duration_seconds) {
    PlatformDouble::Current().RememberScan(key, duration_seconds);
}

void TimeEstimation::UseFile(const std::string& file) {
    PlatformDouble::Current().UseEstimateFile(file);
}
