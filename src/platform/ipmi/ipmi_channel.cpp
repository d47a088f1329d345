#include "platform/ipmi/ipmi_channel.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/ipmi/ipmi_target.h"
#include "platform/ipmi/local_ipmi.h"
#include "platform/log/log.h"
#include "transport/ipmi/hpm_components.h"
#include "transport/ipmi/raw_answer.h"

namespace Vantix::ipmi {

using namespace transport;  // NOLINT: everything here is made of the transport's records
using VantixConnection::ConnectionInfo;
using VantixConnection::ConnectOption;

namespace {

constexpr const char* kIpmiChannelLog = "ipmi_channel";
constexpr std::size_t kFirstFruBytes = 256;
constexpr std::size_t kFirstLocatedBytes = 128;
constexpr std::size_t kMostFruBytes = 8192;
constexpr std::size_t kMostLocatedFrus = 24;
constexpr int kMostFruRounds = 3;
constexpr int kInitializing = 0xd2;  // completion code "BMC initialization in progress"

void Append(std::vector<RawRequest>&& more, std::vector<RawRequest>& requests) {
    std::move(more.begin(), more.end(), std::back_inserter(requests));
}

std::vector<RawAnswer> Slice(const std::vector<RawAnswer>& answers, std::size_t from,
                             std::size_t count) {
    std::vector<RawAnswer> slice;
    for (std::size_t i = from; i < from + count && i < answers.size(); ++i) {
        slice.push_back(answers[i]);
    }
    return slice;
}

}  // namespace

IpmiChannel::IpmiChannel(const ConnectOption& option, CommandRunner& runner, Clock& clock,
                         std::string root_folder)
    : option_(option),
      root_folder_(std::move(root_folder)),
      sessions_(option, IpmiTargetOf(option), runner, clock) {}

std::shared_ptr<IpmiChannel> IpmiChannel::Of(const ConnectionInfo& connection) {
    if (connection.connect_case != VantixConnection::kConnectCaseIpmi) return nullptr;
    if (connection.channel != nullptr) {
        return std::static_pointer_cast<IpmiChannel>(connection.channel);
    }
    if (!connection.host.empty()) return nullptr;
    ConnectOption option = VantixConnection::ActiveRun::Option();
    option.target_address.clear();
    auto channel = std::make_shared<IpmiChannel>(option, SystemIpmiRunner(), SystemClock());
    const IpmiFailure failure = channel->Open();
    if (!failure) return channel;
    Log(2, kIpmiChannelLog, __LINE__).Stream() << "Local IPMI is not usable: " << failure.text;
    return nullptr;
}

IpmiFailure IpmiChannel::Open() {
    if (option_.target_address.empty() && !HasLocalIpmiDevice(option_, root_folder_)) {
        return {IpmiProblem::kNoDevice, "there is neither /dev/ipmi0 nor another IPMI device"};
    }
    const std::string silence = option_.run->Recall(IpmiSilenceKey(option_));
    if (!silence.empty()) return {IpmiProblem::kNoAnswer, silence};
    option_.run->Activity("asking the BMC over IPMI");
    const IpmiFailure failure = Identify();
    if (failure.problem == IpmiProblem::kNoAnswer || failure.problem == IpmiProblem::kTimedOut) {
        option_.run->Remember(IpmiSilenceKey(option_), failure.text);
    }
    return failure;
}

// Everything that is worth having in one session: a session costs ten exchanges by itself. What a
// BMC may be slow to refuse comes last.
IpmiFailure IpmiChannel::Identify() {
    RawRequests requests = {GetDeviceIdRequest(), FruSizeRequest(0)};
    Append(FruReadRequests(0, 0, kFirstFruBytes, false), requests);
    requests.push_back(HpmCapabilitiesRequest());
    RawAnswers answers;
    for (int busy_answers = 0;; ++busy_answers) {
        const IpmiFailure failure = Ask(requests, answers);
        if (answers.empty()) return failure;
        const int completion = answers.front().completion;
        const bool is_busy = completion == kCompletionBusy || completion == kInitializing;
        if (const auto device = ParseDeviceId(answers.front())) {
            device_ = *device;
            Keep(failure);
            break;
        }
        if (!is_busy) {
            return {IpmiProblem::kOther, "the BMC does not answer Get Device ID"};
        }
        if (busy_answers == kMostBusyAnswers || option_.run->IsCancelled()) {
            return {IpmiProblem::kBusy, "the BMC is busy or still starting"};
        }
        sessions_.Pause(kBusyPause);
    }
    main_fru_size_ = ParseFruSize(answers[1]);
    if (main_fru_size_ && !main_fru_size_->is_in_words) {
        AppendFruBytes(Slice(answers, 2, requests.size() - 3), false, main_fru_start_);
    }
    component_numbers_ = ParseHpmComponents(answers.back());
    return {};
}

IpmiFailure IpmiChannel::Ask(const RawRequests& requests, RawAnswers& answers) {
    std::vector<std::string> lines;
    for (const RawRequest& request : requests) lines.push_back(RawLine(request));
    const SessionResult result = sessions_.Run(lines);
    answers.clear();
    if (!result.texts.empty()) {
        answers = ReadRawAnswers(requests, result.texts, result.error_output);
    }
    return result.failure;
}

void IpmiChannel::Keep(const IpmiFailure& failure) {
    if (!failure) return;
    Log(2, kIpmiChannelLog, __LINE__).Stream() << "IPMI session broken off: " << failure.text;
    if (!failure_) failure_ = failure;
}

const FruData& IpmiChannel::MainFru() {
    if (!main_fru_) {
        main_fru_ =
            main_fru_size_ ? ReadFru(0, *main_fru_size_, std::move(main_fru_start_)) : FruData();
    }
    return *main_fru_;
}

// The areas tell their lengths only once their beginnings are there: a few rounds at most.
FruData IpmiChannel::ReadFru(std::uint8_t id, FruSize size, Bytes image) {
    for (int round = 0; round < kMostFruRounds; ++round) {
        const std::size_t needed = std::min(
            {FruBytesNeeded(image), size.bytes * (size.is_in_words ? 2 : 1), kMostFruBytes});
        if (image.size() >= needed || image.size() % 2 != 0) break;
        RawAnswers answers;
        Keep(Ask(FruReadRequests(id, image.size(), needed, size.is_in_words), answers));
        const std::size_t before = image.size();
        AppendFruBytes(answers, size.is_in_words, image);
        if (image.size() == before) break;
    }
    FruData data = ReadFruData(image);
    if (data.has_bad_checksum) {
        Log(2, kIpmiChannelLog, __LINE__).Stream()
            << "FRU " << static_cast<int>(id) << " has an area with a wrong checksum";
    }
    return data;
}

const std::vector<FruDevice>& IpmiChannel::FruDevices() {
    if (fru_devices_) return *fru_devices_;
    fru_devices_.emplace();
    const SessionResult result = sessions_.Run({kFruLocatorLine});
    Keep(result.failure);
    if (result.texts.empty() || !result.texts.front()) return *fru_devices_;
    std::vector<FruLocator> locators = ParseFruLocators(*result.texts.front());
    locators.erase(std::remove_if(locators.begin(), locators.end(),
                                  [](const FruLocator& locator) { return locator.fru_id == 0; }),
                   locators.end());
    if (locators.size() > kMostLocatedFrus) locators.resize(kMostLocatedFrus);
    if (!locators.empty()) ReadLocatedFrus(locators);
    return *fru_devices_;
}

// Sizes and beginnings of all devices in one session; "Device not present" is an answer like any
// other.
void IpmiChannel::ReadLocatedFrus(const std::vector<FruLocator>& locators) {
    RawRequests requests;
    for (const FruLocator& locator : locators) {
        requests.push_back(FruSizeRequest(locator.fru_id));
        Append(FruReadRequests(locator.fru_id, 0, kFirstLocatedBytes, false), requests);
    }
    RawAnswers answers;
    Keep(Ask(requests, answers));
    const std::size_t per_device = requests.size() / locators.size();
    for (std::size_t i = 0; i < locators.size() && !answers.empty(); ++i) {
        const auto size = ParseFruSize(answers[i * per_device]);
        if (!size) continue;
        Bytes image;
        if (!size->is_in_words) {
            AppendFruBytes(Slice(answers, i * per_device + 1, per_device - 1), false, image);
        }
        fru_devices_->push_back(
            {locators[i], ReadFru(locators[i].fru_id, *size, std::move(image))});
    }
}

const std::vector<FirmwareComponent>& IpmiChannel::Components() {
    if (components_) return *components_;
    components_.emplace();
    if (component_numbers_.empty()) return *components_;
    RawRequests requests;
    for (const std::uint8_t number : component_numbers_) {
        requests.push_back(HpmDescriptionRequest(number));
        requests.push_back(HpmRevisionRequest(number));
    }
    RawAnswers answers;
    Keep(Ask(requests, answers));
    for (std::size_t i = 0; i < component_numbers_.size() && !answers.empty(); ++i) {
        const auto revision = ParseHpmRevision(answers[2 * i + 1]);
        if (!revision) continue;
        components_->push_back({component_numbers_[i], ParseHpmDescription(answers[2 * i]),
                                revision->version, revision->auxiliary});
    }
    return *components_;
}

}  // namespace Vantix::ipmi
