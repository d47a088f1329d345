#include "platform/cim/cim_channel.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/cim/cim_errors.h"
#include "platform/log/log.h"

namespace Vantix::cim {

using transport::CimAnswer;
using transport::CimFailure;
using transport::CimProblem;
using transport::CimSettings;
using transport::Milliseconds;
using transport::PoliteSettings;
using VantixConnection::ConnectOption;

namespace {

constexpr const char* kCimChannelLog = "cim_channel";

// The one that most services use, the spellings of the interoperability namespace, makers' own.
constexpr const char* kNamespaces[] = {"root/cimv2",      "root/interop", "interop",
                                       "root/PG_InterOp", "root/hpq",     "root/dcim"};

Milliseconds Seconds(int seconds) {
    return Milliseconds(1000LL * seconds);
}

PoliteSettings PoliteSettingsOf(const ConnectOption& option) {
    PoliteSettings settings;
    settings.max_in_flight = 1;
    settings.deadline = Seconds(option.deadline_seconds);
    // Nothing is left behind by a request that is given up: there are no sessions.
    settings.finish_time = Milliseconds(0);
    const auto run = option.run;
    settings.is_cancelled = [run] { return run->IsCancelled(); };
    return settings;
}

CimSettings ClientSettingsOf(const ConnectOption& option) {
    CimSettings settings;
    // Over plain HTTP a password goes out only where the user gave up protection by name.
    const bool is_login_safe = !option.cim_plain_http || !option.verify_certificate;
    const bool has_login = !option.user.empty() || !option.password.empty();
    if (has_login && is_login_safe) settings.credentials = {option.user, option.password};
    const auto run = option.run;
    settings.may_log_in = [run] { return run->MayTryLogin(); };
    settings.on_login_refused = [run](const std::string& what) { run->LoginRefused(what); };
    return settings;
}

}  // namespace

struct CimChannel::Row {
    CimSource source;
    const char* class_name;
    std::vector<CimInstance> CimSnapshot::*list;
    bool is_required;  ///< looked for in every namespace
};

const std::vector<CimChannel::Row>& CimChannel::Rows() {
    static const std::vector<Row> kRows{
        {CimSource::kSystems, "CIM_ComputerSystem", &CimSnapshot::systems, true},
        {CimSource::kChassis, "CIM_Chassis", &CimSnapshot::chassis, false},
        {CimSource::kPackages, "CIM_PhysicalPackage", &CimSnapshot::packages, false},
        {CimSource::kSlots, "CIM_Slot", &CimSnapshot::slots, false},
        {CimSource::kPackagesInSlot, "CIM_PackageInSlot", &CimSnapshot::packages_in_slot, false},
        {CimSource::kSystemPackages, "CIM_ComputerSystemPackage", &CimSnapshot::system_packages,
         false},
        {CimSource::kSoftware, "CIM_SoftwareIdentity", &CimSnapshot::software, true},
        {CimSource::kInstalled, "CIM_InstalledSoftwareIdentity", &CimSnapshot::installed, false},
        {CimSource::kElementSoftware, "CIM_ElementSoftwareIdentity", &CimSnapshot::element_software,
         false},
        {CimSource::kOperatingSystems, "CIM_OperatingSystem", &CimSnapshot::operating_systems,
         false},
        {CimSource::kProcessors, "CIM_Processor", &CimSnapshot::processors, false}};
    return kRows;
}

CimChannel::CimChannel(const ConnectOption& option,
                       std::unique_ptr<transport::HttpTransport> bottom, transport::Clock& clock)
    : option_(option),
      bottom_(std::move(bottom)),
      polite_(*bottom_, clock, PoliteSettingsOf(option)),
      client_(polite_, ClientSettingsOf(option)),
      states_(Rows().size()) {
    if (!option.cim_namespace.empty()) {
        namespaces_.push_back({option.cim_namespace});
        return;
    }
    for (const char* name : kNamespaces) namespaces_.push_back({name});
}

CimChannel::~CimChannel() = default;

CimChannel* CimChannel::Of(const VantixConnection::ConnectionInfo& connection) {
    const bool is_cim = connection.connect_case == VantixConnection::kConnectCaseCim;
    return is_cim ? static_cast<CimChannel*>(connection.channel.get()) : nullptr;
}

CimFailure CimChannel::Open() {
    CimFailure failure = Need({CimSource::kSystems});
    // A service without computer systems may still know software; the login is proven either way.
    return failure.IsElsewhere() ? Need({CimSource::kSoftware}) : failure;
}

CimFailure CimChannel::Need(const std::vector<CimSource>& sources) {
    CimFailure first;
    for (const CimSource source : sources) {
        CimFailure failure = Read(Rows()[static_cast<std::size_t>(source)]);
        if (failure && !first) first = std::move(failure);
    }
    return first;
}

CimFailure CimChannel::NeedSoftware() {
    return Need({CimSource::kSoftware, CimSource::kInstalled, CimSource::kElementSoftware});
}

const std::vector<std::string>& CimChannel::Skipped(CimSource source) const {
    return states_[static_cast<std::size_t>(source)].skipped;
}

// Optional classes are looked for only where something was found: each namespace costs a request.
std::vector<std::size_t> CimChannel::Order(bool is_required) const {
    std::vector<std::size_t> order{home_};
    for (std::size_t at = 0; at < namespaces_.size(); ++at) {
        const Standing standing = namespaces_[at].standing;
        const bool is_worth_it =
            is_required ? standing != Standing::kDead : standing == Standing::kAlive;
        if (at != home_ && is_worth_it) order.push_back(at);
    }
    return order;
}

CimAnswer CimChannel::Ask(std::size_t where, const char* class_name) {
    Namespace& name_space = namespaces_[where];
    option_.run->Activity(std::string("reading ") + class_name + " over CIM");
    const bool is_inventory = std::string_view(class_name) == "CIM_SoftwareIdentity";
    const Milliseconds timeout =
        Seconds(is_inventory ? option_.inventory_timeout_seconds : option_.timeout_seconds);
    CimAnswer answer =
        client_.Call(transport::EnumerateInstancesCall(name_space.name, class_name), timeout);
    Log(4, kCimChannelLog, __LINE__).Stream()
        << class_name << " in " << name_space.name << ": " << answer.instances.size()
        << " instance(s), " << answer.skipped.size() << " left out"
        << (answer.failure ? ", " + answer.failure.text : std::string());
    if (answer.failure.cim_status == transport::kCimInvalidNamespace) {
        name_space.standing = Standing::kDead;
    } else if (!answer.failure) {
        name_space.standing = Standing::kAlive;
    }
    return answer;
}

CimFailure CimChannel::Read(const Row& row) {
    State& state = states_[static_cast<std::size_t>(row.source)];
    if (state.is_read) return state.unknown;
    CimFailure unknown;
    for (const std::size_t where : Order(row.is_required)) {
        CimAnswer answer = Ask(where, row.class_name);
        if (answer.failure.IsElsewhere()) {
            unknown = std::move(answer.failure);
            continue;
        }
        (snapshot_.*row.list) = std::move(answer.instances);
        state.skipped = std::move(answer.skipped);
        if (answer.failure) return answer.failure;
        state.is_read = true;
        if (row.is_required) home_ = where;
        return {};
    }
    state.is_read = true;
    if (row.is_required) state.unknown = std::move(unknown);
    return state.unknown;
}

TarselResult CimChannel::Remember(const CimFailure& failure) {
    TarselResult result = ResultOfCimFailure(failure, Kind(), CimTargetOf(option_), option_.user);
    if (!result.IsSucceed()) {
        Log(2, kCimChannelLog, __LINE__).Stream() << "CIM failed: " << result;
        option_.run->RecordFailure(result, MayOtherPortsAnswer(failure));
    }
    return result;
}

}  // namespace Vantix::cim
