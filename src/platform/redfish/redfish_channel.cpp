#include "platform/redfish/redfish_channel.h"

#include <utility>

#include "platform/connection/https_target.h"
#include "platform/connection/redfish_errors.h"
#include "platform/log/log.h"
#include "platform/log/log_settings.h"
#include "platform/redfish/fresh_start.h"
#include "platform/redfish/managed_system.h"
#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {

using transport::Milliseconds;
using transport::PoliteSettings;
using transport::RedfishFailure;
using transport::RedfishSettings;
using VantixConnection::ConnectOption;
namespace json = transport::json;

namespace {

constexpr const char* kRedfishChannelLog = "redfish_channel";
constexpr Milliseconds kLogOutGrace{10000};
constexpr Milliseconds kSettleWait{3000};
constexpr int kSettleRounds = 5;

Milliseconds Seconds(int seconds) {
    return Milliseconds(1000LL * seconds);
}

PoliteSettings PoliteSettingsOf(const ConnectOption& option) {
    PoliteSettings settings;
    settings.max_in_flight = option.max_parallel;
    settings.deadline = Seconds(option.deadline_seconds);
    const auto run = option.run;
    settings.is_cancelled = [run] { return run->IsCancelled(); };
    return settings;
}

transport::LoginMethod LoginMethodOf(VantixConnection::AuthMethod method) {
    switch (method) {
        case VantixConnection::AuthMethod::kSession:
            return transport::LoginMethod::kSession;
        case VantixConnection::AuthMethod::kBasic:
            return transport::LoginMethod::kBasic;
        case VantixConnection::AuthMethod::kAuto:
            break;
    }
    return transport::LoginMethod::kAuto;
}

RedfishSettings ServiceSettingsOf(const ConnectOption& option) {
    RedfishSettings settings;
    settings.credentials = {option.user, option.password};
    settings.login = LoginMethodOf(option.auth);
    settings.request_timeout = Seconds(option.timeout_seconds);
    settings.inventory_timeout = Seconds(option.inventory_timeout_seconds);
    const auto run = option.run;
    settings.may_log_in = [run] { return run->MayTryLogin(); };
    settings.on_login_refused = [run](const std::string& what) { run->LoginRefused(what); };
    settings.on_secret = [](const std::string& token) { AddLogSecret(token); };
    settings.is_cancelled = [run] { return run->IsCancelled(); };
    return settings;
}

}  // namespace

// The memory modules of the system: read only when somebody asks for them.
class RedfishChannel::MemorySurvey : public SurveyTask {
  public:
    using SurveyTask::SurveyTask;
    void Start(const Resource* system) {
        Started();
        if (system == nullptr) return;
        const std::string path = transport::LinkPath(json::Link(system->body, "Memory"));
        if (path.empty()) return;
        ReadAll("memory", path, OptionalCollection(), context_.snapshot.memory, nullptr);
    }
};

RedfishChannel::RedfishChannel(const ConnectOption& option,
                               std::unique_ptr<transport::HttpTransport> bottom,
                               transport::Clock& clock)
    : option_(option),
      bottom_(std::move(bottom)),
      clock_(clock),
      polite_(*bottom_, clock, PoliteSettingsOf(option)),
      redirects_(polite_, "https", option.target_address, VantixConnection::HttpsPortOf(option)),
      service_(redirects_, ServiceSettingsOf(option)),
      facts_({service_, snapshot_, *option_.run}),
      firmware_({service_, snapshot_, *option_.run}),
      devices_({service_, snapshot_, *option_.run}),
      memory_(std::make_unique<MemorySurvey>(SurveyContext{service_, snapshot_, *option_.run})) {}

RedfishChannel::~RedfishChannel() {
    Close();
}

RedfishChannel* RedfishChannel::Of(const VantixConnection::ConnectionInfo& connection) {
    const bool is_redfish = connection.connect_case == VantixConnection::kConnectCaseRest ||
                            connection.connect_case == VantixConnection::kConnectCaseVeskRest;
    return is_redfish ? static_cast<RedfishChannel*>(connection.channel.get()) : nullptr;
}

RedfishFailure RedfishChannel::Open() {
    is_open_ = true;
    const RedfishFailure failure = service_.Open();
    if (failure) return failure;
    snapshot_.root = service_.Root();
    StartSurveys();
    return {};
}

// The order is that of the longest chains: what is started first is asked for first.
void RedfishChannel::StartSurveys() {
    if (option_.facts_only) {
        facts_.Start([this] { FactsEnded(); });
        return;
    }
    firmware_.Start();
    facts_.Start([this] { FactsEnded(); });
    devices_.Start();
    const bool has_devices = !transport::LinkPath(json::Link(snapshot_.root, "Chassis")).empty();
    if (has_devices) firmware_.CheckLinks();
}

void RedfishChannel::FactsEnded() {
    managed_ = FindManagedSystem(snapshot_, option_.system_id);
    // Without a computer system the enclosure's chassis stands for it.
    if (option_.facts_only && managed_.system == nullptr) devices_.Start();
    if (!option_.facts_only || managed_.system == nullptr) devices_.SystemKnown(managed_.system);
    NoteSystem();
}

void RedfishChannel::NoteSystem() {
    if (!managed_.notice.empty()) option_.run->AddNotice(managed_.notice);
    if (managed_.system == nullptr) {
        const bool is_wished = !option_.system_id.empty();
        if (is_wished && !facts_.SystemsFailure()) ReportMissingSystem();
        return;
    }
    if (json::Text(managed_.system->body, "PowerState") == "Off") {
        option_.run->AddNotice(
            "The host is powered off: its BMC may not know all firmware versions; "
            "power it on and scan again for a complete list.");
    }
}

// Optional as the computer systems are, the one that was asked for is not.
void RedfishChannel::ReportMissingSystem() {
    VantixConnection::SourceStatus status;
    status.source = "computer systems";
    status.state = VantixConnection::SourceState::kPartial;
    status.items_read = static_cast<int>(snapshot_.systems.size());
    status.detail = "the one that was asked for is not among them";
    option_.run->ReportSource(std::move(status));
}

void RedfishChannel::WaitFor(const SurveyTask& task) {
    service_.StepUntil([&] { return task.IsDone(); });
}

const ManagedSystem& RedfishChannel::Managed() {
    WaitFor(facts_);
    if (managed_.system == nullptr && managed_.chassis == nullptr) {
        WaitFor(devices_);
        managed_ = FindManagedSystem(snapshot_, option_.system_id);
    }
    return managed_;
}

const RedfishFailure& RedfishChannel::FactsFailure() const {
    return facts_.SystemsFailure() ? facts_.SystemsFailure() : facts_.ManagersFailure();
}

bool RedfishChannel::IsStarting(const std::string& path) {
    bool is_done = false;
    bool is_starting = false;
    transport::GetOptions once;
    once.is_attempt = true;
    service_.Get(path, once, [&](transport::RedfishAnswer&& answer) {
        is_starting = answer.failure.status == 503 ||
                      answer.failure.transport == transport::HttpErrorKind::kConnect;
        is_done = true;
    });
    service_.StepUntil([&] { return is_done; });
    return is_starting;
}

const ServerSnapshot& RedfishChannel::Inventory() {
    Managed();
    if (option_.facts_only) return snapshot_;
    WaitFor(firmware_);
    SettleInventory();
    WaitFor(devices_);
    return snapshot_;
}

redfish::Inventory RedfishChannel::ReadInventory() {
    return redfish::ReadInventory(Inventory(), option_.system_id);
}

bool RedfishChannel::IsInventoryPartial() {
    return firmware_.FailedMembers() > 0;
}

const RedfishFailure& RedfishChannel::InventoryFailure() const {
    return firmware_.Failure();
}

// A controller that has just started lists its components bit by bit.
void RedfishChannel::SettleInventory() {
    if (is_settled_) return;
    is_settled_ = true;
    const bool is_fresh =
        (managed_.manager != nullptr && IsFreshlyStarted(managed_.manager->body)) ||
        polite_.GetCounts().unavailable > 0;
    if (!is_fresh || !snapshot_.has_firmware_inventory) return;
    for (int round = 0; round < kSettleRounds && !option_.run->IsCancelled(); ++round) {
        const int before = firmware_.MemberCount();
        option_.run->Activity("the BMC has just started, waiting for its inventory to settle");
        for (Milliseconds waited{0}; waited < kSettleWait && !option_.run->IsCancelled();
             waited += Milliseconds(100)) {
            clock_.Wait(Milliseconds(100));
        }
        firmware_.ReadAgain();
        WaitFor(firmware_);
        if (firmware_.MemberCount() == before) return;
    }
}

TarselResult RedfishChannel::Remember(const RedfishFailure& failure) {
    TarselResult result = VantixConnection::ResultOfConnectFailure(
        failure, VantixConnection::HttpsTargetOf(option_), option_.user);
    if (!result.IsSucceed()) {
        option_.run->RecordFailure(result, VantixConnection::MayOtherPortsAnswer(failure));
    }
    return result;
}

const ServerSnapshot& RedfishChannel::Memory() {
    const Resource* system = Managed().system;
    if (!memory_->IsDone()) {
        memory_->Start(system);
        WaitFor(*memory_);
    }
    return snapshot_;
}

void RedfishChannel::Close() {
    if (!is_open_) return;
    is_open_ = false;
    service_.StopReading();
    polite_.AbandonAll(kLogOutGrace);
    while (service_.Step()) {
    }
    const RedfishFailure failure = service_.Close();
    if (!failure) return;
    Log(2, kRedfishChannelLog, __LINE__).Stream() << "Log-out failed: " << failure.text;
    option_.run->AddNotice("The session on the BMC could not be ended (" + failure.text +
                           "); it ends by itself after the BMC's session time-out.");
}

}  // namespace Vantix::redfish
