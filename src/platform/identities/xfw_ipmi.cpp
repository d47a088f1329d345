// Firmware versions over IPMI.

#include <iterator>
#include <utility>

#include "platform/identities/identities.h"
#include "platform/ipmi/ipmi_channel.h"
#include "platform/ipmi/ipmi_identities.h"
#include "platform/log/log.h"

namespace Vantix {

using VantixConnection::SourceState;
using VantixConnection::SourceStatus;
using VantixOptions::SoftwareIdentity_;

namespace {

constexpr const char* kXfwIpmiLog = "xfw_ipmi";

void Report(ipmi::IpmiChannel& channel, std::size_t count) {
    SourceStatus status;
    status.source = "IPMI inventory";
    status.items_read = static_cast<int>(count);
    const auto& failure = channel.LastFailure();
    status.state = failure ? SourceState::kPartial : SourceState::kComplete;
    if (failure) status.issues.push_back("IPMI: " + failure.text);
    channel.Run().ReportSource(std::move(status));
}

}  // namespace

xFirmwareInventory::xFirmwareInventory(const VantixConnection::ConnectionInfo& connection)
    : connection_(connection) {}

// What broke off after the BMC had answered costs only what it would have told.
INVENTORYRETURNCODE xFirmwareInventory::GetXFWSoftwareIdentity(
    std::vector<SoftwareIdentity_>& list) {
    const auto channel = ipmi::IpmiChannel::Of(connection_);
    if (channel == nullptr) return INVENTORY_FAILED;
    const std::size_t before = list.size();
    const auto& main = channel->MainFru();
    list.push_back(ipmi::BmcIdentity(channel->Device(), main));
    auto components = ipmi::ComponentIdentities(channel->Components());
    std::move(components.begin(), components.end(), std::back_inserter(list));
    auto products = ipmi::FruIdentities(main, channel->FruDevices());
    std::move(products.begin(), products.end(), std::back_inserter(list));
    Report(*channel, list.size() - before);
    Log(3, kXfwIpmiLog, __LINE__).Stream() << "IPMI told " << list.size() - before << " versions, "
                                           << components.size() << " of firmware components";
    return channel->Run().IsCancelled() ? INVENTORY_FAILED : INVENTORY_SUCCESS;
}

}  // namespace Vantix
