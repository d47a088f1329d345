// The channel behind a ConnectionInfo of an IPMI target: what its BMC tells of itself, each answer
// fetched at most once.
//
// Opening it is one session that fetches everything most scans need; no session stays open between
// questions. Deliberately not here: result codes (ipmi_errors.h), identities.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/connection/connection.h"
#include "platform/ipmi/ipmi_sessions.h"
#include "transport/ipmi/device_id.h"
#include "transport/ipmi/fru_data.h"
#include "transport/ipmi/fru_locator.h"
#include "transport/ipmi/fru_requests.h"

namespace Vantix::ipmi {

/// A FRU device with what its locator record says of it.
struct FruDevice {
    transport::FruLocator locator;
    transport::FruData data;
};

/// A firmware component by PICMG HPM.1.
struct FirmwareComponent {
    int number = 0;
    std::string description;
    std::string version;
    transport::Bytes auxiliary;
};

class IpmiChannel {
  public:
    /// An empty `option.target_address` means this machine's own BMC; its device node is looked for
    /// below `root_folder`. `runner` and `clock` must outlive the object.
    IpmiChannel(const VantixConnection::ConnectOption& option, transport::CommandRunner& runner,
                transport::Clock& clock, std::string root_folder = "/");
    IpmiChannel(const IpmiChannel&) = delete;
    IpmiChannel& operator=(const IpmiChannel&) = delete;

    /// The channel of an IPMI connection; null for any other connection. A connection to the local
    /// BMC that was made by hand (case 1, no host, no channel) gets one, opened, or null when that
    /// fails.
    static std::shared_ptr<IpmiChannel> Of(const VantixConnection::ConnectionInfo& connection);

    /// Asks who is there. Must be called once, first; nothing else may be asked when it fails.
    /// Remembers a silent BMC for the rest of the run.
    [[nodiscard]] transport::IpmiFailure Open();

    [[nodiscard]] const transport::DeviceId& Device() const { return device_; }
    /// FRU 0, the machine's own; empty when it has none.
    [[nodiscard]] const transport::FruData& MainFru();
    /// All FRU devices but 0 that the BMC's sensor records locate.
    [[nodiscard]] const std::vector<FruDevice>& FruDevices();
    [[nodiscard]] const std::vector<FirmwareComponent>& Components();

    /// The first failure after opening; a scan goes on without what it cost.
    [[nodiscard]] const transport::IpmiFailure& LastFailure() const { return failure_; }
    [[nodiscard]] VantixConnection::RunContext& Run() { return *option_.run; }

  private:
    using RawRequests = std::vector<transport::RawRequest>;
    using RawAnswers = std::vector<transport::RawAnswer>;

    [[nodiscard]] transport::IpmiFailure Identify();
    [[nodiscard]] transport::IpmiFailure Ask(const RawRequests& requests, RawAnswers& answers);
    [[nodiscard]] transport::FruData ReadFru(std::uint8_t id, transport::FruSize size,
                                             transport::Bytes image);
    void ReadLocatedFrus(const std::vector<transport::FruLocator>& locators);
    void Keep(const transport::IpmiFailure& failure);

    VantixConnection::ConnectOption option_;
    std::string root_folder_;
    IpmiSessions sessions_;
    transport::IpmiFailure failure_;
    transport::DeviceId device_;
    std::optional<transport::FruSize> main_fru_size_;
    transport::Bytes main_fru_start_;
    std::vector<std::uint8_t> component_numbers_;
    std::optional<transport::FruData> main_fru_;
    std::optional<std::vector<FruDevice>> fru_devices_;
    std::optional<std::vector<FirmwareComponent>> components_;
};

}  // namespace Vantix::ipmi
