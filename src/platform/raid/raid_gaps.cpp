#include "platform/raid/raid_gaps.h"

#include <algorithm>

#include "common/result/result_codes.h"

namespace Vantix::raid {
namespace {

using transport::ArcconfProblem;
using VantixConnection::SourceState;
using VantixConnection::SourceStatus;

std::string Quoted(const std::string& words) {
    return words.empty() ? std::string() : ": \"" + words + "\"";
}

}  // namespace

RaidCause CauseOf(ArcconfProblem problem, const std::string& words, const std::string& release) {
    const std::string tool = release.empty() ? "arcconf" : "arcconf " + release;
    const std::string by_hand = "Run \"arcconf list\" by hand to see what is wrong with it.";
    switch (problem) {
        case ArcconfProblem::kNotInstalled:
            return {"arcconf is not installed",
                    "Install the program arcconf of the controller's maker.", SourceState::kFailed};
        case ArcconfProblem::kNotStarted:
            return {"arcconf could not be run" + Quoted(words), by_hand, SourceState::kFailed};
        case ArcconfProblem::kTimedOut:
            return {"arcconf did not end and was stopped", by_hand, SourceState::kTimeout};
        case ArcconfProblem::kCancelled:
            return {"the scan was interrupted", "Run the scan again.", SourceState::kFailed};
        case ArcconfProblem::kNoRights:
            return {"arcconf answers to an administrator only", "Run the scan as root.",
                    SourceState::kDenied};
        case ArcconfProblem::kNotItsWords:
            return {tool + " gave an answer that is not understood" + Quoted(words), by_hand,
                    SourceState::kFailed};
        case ArcconfProblem::kNoController:
            return {tool + " finds no controller",
                    "Run the scan as root, or install the release of arcconf that serves this "
                    "generation of controllers.",
                    SourceState::kFailed};
        case ArcconfProblem::kNone:
        case ArcconfProblem::kRefused:
            break;
    }
    return {"arcconf did not tell of its disks" + Quoted(words), by_hand, SourceState::kFailed};
}

RaidCause CauseNotListed() {
    return {"arcconf does not list this controller",
            "Install the release of arcconf that serves this generation of controllers.",
            SourceState::kFailed};
}

RaidCause CauseCutOff() {
    return {"arcconf's list of its disks is not complete", "Run the scan again.",
            SourceState::kFailed};
}

RaidCause CauseOtherMaker() {
    return {"no supported tool reads controllers of this maker",
            "The tool of the controller's maker lists them.", SourceState::kFailed};
}

std::int32_t ResultCodeOf(ArcconfProblem problem) {
    switch (problem) {
        case ArcconfProblem::kNone:
        case ArcconfProblem::kNotInstalled:
        case ArcconfProblem::kNoController:
            return SUCCEED;
        case ArcconfProblem::kTimedOut:
            return TIMEOUT;
        case ArcconfProblem::kCancelled:
            return INTERRUPTED_BY_USER;
        case ArcconfProblem::kNoRights:
            return ADMINISTRATOR_PERMISSION_NEEDED;
        case ArcconfProblem::kNotStarted:
        case ArcconfProblem::kNotItsWords:
        case ArcconfProblem::kRefused:
            break;
    }
    return GENERIC_FAILURE;
}

std::string LabelOf(const RaidAdapter& adapter) {
    std::string label = adapter.hides_disks ? "RAID controller " : "storage controller ";
    label += adapter.ids + " at " + adapter.address;
    return adapter.driver.empty() ? label : label + " (driver " + adapter.driver + ")";
}

SourceStatus StatusOf(const std::vector<RaidGap>& gaps, int controllers_read, int disks_read) {
    SourceStatus status;
    status.source = kRaidSource;
    status.items_read = disks_read;
    status.items_failed = static_cast<int>(gaps.size());
    status.state = SourceState::kComplete;
    if (gaps.empty()) return status;
    status.state = controllers_read > 0 ? SourceState::kPartial : gaps.front().cause.state;
    status.required =
        std::any_of(gaps.begin(), gaps.end(), [](const RaidGap& gap) { return gap.is_certain; });
    status.detail = gaps.front().cause.advice;
    for (const RaidGap& gap : gaps) status.issues.push_back(gap.label + ": " + gap.cause.text);
    return status;
}

std::vector<std::string> NoticesOf(const std::vector<RaidGap>& gaps) {
    std::vector<std::string> notices;
    for (auto gap = gaps.begin(); gap != gaps.end(); ++gap) {
        const auto is_same = [&](const RaidGap& other) {
            return other.cause.text == gap->cause.text;
        };
        if (std::find_if(gaps.begin(), gap, is_same) != gap) continue;
        std::string labels;
        for (const RaidGap& other : gaps) {
            if (is_same(other)) labels += (labels.empty() ? "" : ", ") + other.label;
        }
        notices.push_back("The disks behind " + labels + " were not read: " + gap->cause.text +
                          ". " + gap->cause.advice);
    }
    return notices;
}

}  // namespace Vantix::raid
