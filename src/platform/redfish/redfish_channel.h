// The shared channel behind a ConnectionInfo of a Redfish target: one session, one set of
// connections, and what was read of the server in this scan.
//
// Reading starts with the connection and goes on while the scan asks its questions; each question
// waits only for what it needs. The last owner's release ends the session. Nothing survives it.
#pragma once

#include <memory>
#include <string>

#include "common/result/tarsel_result.h"
#include "platform/connection/connection.h"
#include "platform/redfish/device_survey.h"
#include "platform/redfish/facts_survey.h"
#include "platform/redfish/firmware_survey.h"
#include "platform/redfish/inventory_reader.h"
#include "platform/redfish/managed_system.h"
#include "platform/redfish/server_snapshot.h"
#include "transport/http/polite_transport.h"
#include "transport/http/redirect_follower.h"
#include "transport/redfish/redfish_service.h"

namespace Vantix::redfish {

class RedfishChannel {
  public:
    /// `bottom` carries the exchanges with the target of `option`; `clock` must outlive the object.
    RedfishChannel(const VantixConnection::ConnectOption& option,
                   std::unique_ptr<transport::HttpTransport> bottom, transport::Clock& clock);
    ~RedfishChannel();
    RedfishChannel(const RedfishChannel&) = delete;
    RedfishChannel& operator=(const RedfishChannel&) = delete;

    /// The channel of an established connection; null when it has none of this kind.
    static RedfishChannel* Of(const VantixConnection::ConnectionInfo& connection);

    /// Reads the root and logs in, then starts reading the server without waiting for it. Must be
    /// called once, first; nothing else may be asked when it fails.
    [[nodiscard]] transport::RedfishFailure Open();

    /// The service root (always read once Open succeeded).
    [[nodiscard]] const boost::json::object& Root() const { return snapshot_.root; }

    /// What has been read so far, without waiting.
    [[nodiscard]] const ServerSnapshot& Snapshot() const { return snapshot_; }

    /// Which of the target's systems and managers a scan is about, waited for.
    const ManagedSystem& Managed();
    /// Why systems or managers could not be read; no failure when they could.
    [[nodiscard]] const transport::RedfishFailure& FactsFailure() const;

    /// Whether `path` is answered with 503 or the connection is refused.
    bool IsStarting(const std::string& path);

    /// The snapshot with inventory and devices, waited for. A service that has only just started
    /// is read again until it gives the same number of components twice.
    const ServerSnapshot& Inventory();
    /// The firmware list made of it.
    [[nodiscard]] redfish::Inventory ReadInventory();
    /// True when members of the firmware inventory could not be read.
    [[nodiscard]] bool IsInventoryPartial();
    [[nodiscard]] const transport::RedfishFailure& InventoryFailure() const;

    /// The snapshot with the system's memory modules, waited for; read on the first call.
    const ServerSnapshot& Memory();

    /// The result of a failure to read, remembered for the run: a later protocol leg reports it
    /// where it concerns the target itself.
    TarselResult Remember(const transport::RedfishFailure& failure);

    [[nodiscard]] VantixConnection::RunContext& Run() { return *option_.run; }
    [[nodiscard]] bool IsLoginLost() const { return service_.IsLoginLost(); }
    [[nodiscard]] transport::PoliteTransport::Counts Counts() const { return polite_.GetCounts(); }

  private:
    class MemorySurvey;
    void StartSurveys();
    void FactsEnded();
    void NoteSystem();
    void ReportMissingSystem();
    void WaitFor(const SurveyTask& task);
    void SettleInventory();
    void Close();

    VantixConnection::ConnectOption option_;
    std::unique_ptr<transport::HttpTransport> bottom_;
    transport::Clock& clock_;
    transport::PoliteTransport polite_;
    transport::RedirectFollower redirects_;
    transport::RedfishService service_;
    ServerSnapshot snapshot_;
    FactsSurvey facts_;
    FirmwareSurvey firmware_;
    DeviceSurvey devices_;
    std::unique_ptr<MemorySurvey> memory_;
    ManagedSystem managed_;
    bool is_settled_ = false;
    bool is_open_ = false;
};

}  // namespace Vantix::redfish
