// One subject of a server's survey: what is still to come, and how completely it was read.
//
// Base of the surveys beside this file. Reads collections into a snapshot and keeps the status of
// its sources; decides nothing about what to read.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/connection/run_context.h"
#include "platform/redfish/server_snapshot.h"
#include "transport/redfish/collection_reader.h"
#include "transport/redfish/redfish_service.h"

namespace Vantix::redfish {

/// What all surveys of one target share; must outlive them.
struct SurveyContext {
    transport::RedfishService& service;
    ServerSnapshot& snapshot;
    VantixConnection::RunContext& run;
};

/// The state that a failed source has.
VantixConnection::SourceState StateOf(const transport::RedfishFailure& failure);

class SurveyTask {
  public:
    explicit SurveyTask(SurveyContext context) : context_(context) {}
    SurveyTask(const SurveyTask&) = delete;
    SurveyTask& operator=(const SurveyTask&) = delete;
    virtual ~SurveyTask() = default;

    /// True when it was started and nothing is to come any more.
    [[nodiscard]] bool IsDone() const { return is_started_ && pending_ == 0; }

  protected:
    using Then = std::function<void(const transport::RedfishFailure&)>;
    using Status = VantixConnection::SourceStatus;

    /// Reads a collection (or the members at `paths`) and appends its members to `target`, which
    /// must be a member of the snapshot; then calls `then`.
    void ReadAll(const std::string& source, const std::string& path,
                 transport::CollectionOptions options, std::vector<Resource>& target, Then then);
    void ReadEach(const std::string& source, const std::vector<std::string>& paths,
                  transport::CollectionOptions options, std::vector<Resource>& target, Then then);

    /// Reads one resource and appends it.
    void ReadOne(const std::string& source, const std::string& path, bool is_optional,
                 std::vector<Resource>& target, Then then);

    /// Reads one resource without keeping it.
    void Read(const std::string& path, bool is_optional,
              std::function<void(transport::RedfishAnswer&&)> handler);

    void Started() { is_started_ = true; }
    /// Keeps the task from being done between two readings.
    void Hold() { ++pending_; }
    void Release() { --pending_; }
    /// The source's status so far, for changes beyond what the readings store themselves.
    Status& StatusOf(const std::string& source);
    void Report(const std::string& source);
    /// Forgets a source that turned out not to exist.
    void Forget(const std::string& source) { sources_.erase(source); }
    void Fail(const std::string& source, const transport::RedfishFailure& failure);

    SurveyContext context_;

  private:
    void TakeCollection(const std::string& source, transport::CollectionAnswer&& answer,
                        std::vector<Resource>& target, const Then& then);

    int pending_ = 0;
    bool is_started_ = false;
    std::map<std::string, Status> sources_;
};

/// Options for resources without which a scan still makes sense.
transport::CollectionOptions OptionalCollection();

}  // namespace Vantix::redfish
