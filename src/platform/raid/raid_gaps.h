// What is told of controllers whose disks were not read: one sentence of cause, one of advice, the
// state of the source. Private to this family.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/connection/run_context.h"
#include "platform/raid/raid_adapters.h"
#include "transport/arcconf/arcconf_problem.h"

namespace Vantix::raid {

inline constexpr const char* kRaidSource = "RAID disks";

/// Why disks were not read.
struct RaidCause {
    std::string text;    ///< "arcconf is not installed"
    std::string advice;  ///< one sentence
    VantixConnection::SourceState state = VantixConnection::SourceState::kFailed;
};

/// `words` are the tool's own, `release` is the tool's; both may be empty.
[[nodiscard]] RaidCause CauseOf(transport::ArcconfProblem problem, const std::string& words,
                                const std::string& release);
/// The tool works and does not know this one of several controllers.
[[nodiscard]] RaidCause CauseNotListed();
/// The list of disks ends in the middle, or is none.
[[nodiscard]] RaidCause CauseCutOff();
/// No tool that could be asked reads controllers of this maker.
[[nodiscard]] RaidCause CauseOtherMaker();

/// 0 for kNone, kNotInstalled and kNoController.
[[nodiscard]] std::int32_t ResultCodeOf(transport::ArcconfProblem problem);

/// "RAID controller 9005:028f at 0000:d9:00.0 (driver smartpqi)"
[[nodiscard]] std::string LabelOf(const RaidAdapter& adapter);

/// One controller whose disks are missing from the report, or may be.
struct RaidGap {
    std::string label;
    RaidCause cause;
    bool is_certain = true;  ///< disks are surely missing: the scan is partial
};

/// The status of the source for so many controllers and disks that were read. Optional when no gap
/// is certain.
[[nodiscard]] VantixConnection::SourceStatus StatusOf(const std::vector<RaidGap>& gaps,
                                                      int controllers_read, int disks_read);

/// A sentence for each cause, naming all its controllers.
[[nodiscard]] std::vector<std::string> NoticesOf(const std::vector<RaidGap>& gaps);

}  // namespace Vantix::raid
