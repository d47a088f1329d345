#include "platform/redfish/survey_task.h"

#include <utility>

namespace Vantix::redfish {

using transport::CollectionAnswer;
using transport::CollectionOptions;
using transport::HttpErrorKind;
using transport::RedfishAnswer;
using transport::RedfishFailure;
using transport::RedfishProblem;
using VantixConnection::SourceState;

SourceState StateOf(const RedfishFailure& failure) {
    switch (failure.problem) {
        case RedfishProblem::kNone:
            return SourceState::kComplete;
        case RedfishProblem::kNotFound:
            return SourceState::kUnsupported;
        case RedfishProblem::kUnauthorized:
        case RedfishProblem::kForbidden:
        case RedfishProblem::kLicence:
        case RedfishProblem::kPasswordChange:
            return SourceState::kDenied;
        case RedfishProblem::kNotReached:
            return failure.transport == HttpErrorKind::kTimeout ||
                           failure.transport == HttpErrorKind::kConnectTimeout ||
                           failure.transport == HttpErrorKind::kDeadline
                       ? SourceState::kTimeout
                       : SourceState::kFailed;
        default:
            return SourceState::kFailed;
    }
}

CollectionOptions OptionalCollection() {
    CollectionOptions options;
    options.get.is_optional = true;
    options.required_fields = {"Id"};
    return options;
}

SurveyTask::Status& SurveyTask::StatusOf(const std::string& source) {
    const auto [found, is_new] = sources_.try_emplace(source);
    if (is_new) {
        found->second.source = source;
        found->second.state = SourceState::kComplete;
        found->second.required = false;
    }
    return found->second;
}

void SurveyTask::Report(const std::string& source) {
    const auto found = sources_.find(source);
    if (found != sources_.end()) context_.run.ReportSource(found->second);
}

void SurveyTask::Fail(const std::string& source, const RedfishFailure& failure) {
    Status& status = StatusOf(source);
    // Of several readings of one source the good ones keep it from being a failure as a whole.
    status.state = status.items_read > 0 ? SourceState::kPartial : StateOf(failure);
    status.detail = failure.text;
    if (failure.transport == HttpErrorKind::kDeadline) status.required = true;
    Report(source);
}

void SurveyTask::ReadAll(const std::string& source, const std::string& path,
                         CollectionOptions options, std::vector<Resource>& target, Then then) {
    ++pending_;
    transport::ReadCollection(
        context_.service, path, std::move(options),
        [this, source, &target, then = std::move(then)](CollectionAnswer&& answer) {
            TakeCollection(source, std::move(answer), target, then);
        });
}

void SurveyTask::ReadEach(const std::string& source, const std::vector<std::string>& paths,
                          CollectionOptions options, std::vector<Resource>& target, Then then) {
    ++pending_;
    transport::ReadMembers(
        context_.service, paths, std::move(options),
        [this, source, &target, then = std::move(then)](CollectionAnswer&& answer) {
            TakeCollection(source, std::move(answer), target, then);
        });
}

void SurveyTask::TakeCollection(const std::string& source, CollectionAnswer&& answer,
                                std::vector<Resource>& target, const Then& then) {
    for (auto& member : answer.members) {
        target.push_back({std::move(member.path), std::move(member.body)});
    }
    if (answer.failure) {
        Fail(source, answer.failure);
    } else {
        Status& status = StatusOf(source);
        status.items_read += static_cast<int>(answer.members.size());
        status.items_failed += answer.failed_members;
        for (auto& issue : answer.issues) status.issues.push_back(std::move(issue));
        if (status.items_failed > 0) status.state = SourceState::kPartial;
        if (answer.ran_out_of_time) status.required = true;
        Report(source);
    }
    if (then) then(answer.failure);
    --pending_;
}

void SurveyTask::Read(const std::string& path, bool is_optional,
                      std::function<void(RedfishAnswer&&)> handler) {
    ++pending_;
    transport::GetOptions options;
    options.is_optional = is_optional;
    context_.service.Get(path, options,
                         [this, handler = std::move(handler)](RedfishAnswer&& answer) {
                             handler(std::move(answer));
                             --pending_;
                         });
}

void SurveyTask::ReadOne(const std::string& source, const std::string& path, bool is_optional,
                         std::vector<Resource>& target, Then then) {
    Read(path, is_optional,
         [this, source, path, &target, then = std::move(then)](RedfishAnswer&& answer) {
             if (answer.Ok()) {
                 target.push_back({path, std::move(answer.body)});
                 ++StatusOf(source).items_read;
                 Report(source);
             } else {
                 Fail(source, answer.failure);
             }
             if (then) then(answer.failure);
         });
}

}  // namespace Vantix::redfish
