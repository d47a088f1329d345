#include "platform/redfish/firmware_survey.h"

#include <utility>

#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {

using transport::CollectionOptions;
using transport::IsSameLink;
using transport::LinkPath;
using transport::RedfishAnswer;
using transport::RedfishFailure;
using transport::RedfishProblem;
namespace json = transport::json;

namespace {

constexpr const char* kSoftwareSource = "software inventory";

// Answers that stay the same however often one asks.
bool IsLasting(const RedfishFailure& failure) {
    const int status = failure.status;
    return failure.problem == RedfishProblem::kNotFound || status == 405 || status == 500 ||
           status == 501;
}

// Where the update service keeps an inventory; some link it below Oem only.
std::string InventoryLink(const boost::json::object& service, const char* name) {
    const std::string linked = LinkPath(json::Link(service, name));
    if (!linked.empty()) return linked;
    const auto* oem = json::Object(service, "Oem");
    if (oem == nullptr) return {};
    for (const auto& maker : *oem) {
        const auto* object = maker.value().if_object();
        if (object == nullptr) continue;
        const std::string below = LinkPath(json::Link(*object, name));
        if (!below.empty()) return below;
    }
    return {};
}

}  // namespace

void FirmwareSurvey::Start() {
    Started();
    service_path_ = LinkPath(json::Link(context_.snapshot.root, "UpdateService"));
    if (service_path_.empty()) service_path_ = "/redfish/v1/UpdateService";
    ReadInventory(service_path_ + "/FirmwareInventory");
}

void FirmwareSurvey::CheckLinks() {
    ReadUpdateService();
}

void FirmwareSurvey::ReadInventory(const std::string& path) {
    path_ = path;
    CollectionOptions options;
    options.get.is_slow = true;
    options.required_fields = {"Id", "Name", "Version"};
    auto& run = context_.run;
    options.on_progress = [&run](std::size_t read, std::size_t all) {
        run.Activity("firmware member " + std::to_string(read) + " of " + std::to_string(all));
    };
    StatusOf(kFirmwareSource).required = true;
    ReadAll(kFirmwareSource, path, std::move(options), context_.snapshot.firmware,
            [this, path](const RedfishFailure& failure) { InventoryEnded(path, failure); });
}

void FirmwareSurvey::InventoryEnded(const std::string& path, const RedfishFailure& failure) {
    if (path != path_) return;
    if (failure && has_former_) {
        RestoreFormer();
        return;
    }
    failure_ = failure;
    inventory_ended_ = true;
    context_.snapshot.has_firmware_inventory = !failure;
    if (failure || context_.snapshot.firmware.empty()) ReadUpdateService();
    CompareLinks();
}

void FirmwareSurvey::ReadUpdateService() {
    if (service_asked_) return;
    service_asked_ = true;
    Read(service_path_, true,
         [this](RedfishAnswer&& answer) { TakeUpdateService(std::move(answer)); });
}

void FirmwareSurvey::TakeUpdateService(RedfishAnswer&& answer) {
    service_ended_ = true;
    service_is_broken_ = IsLasting(answer.failure);
    if (answer.Ok()) context_.snapshot.update_service = std::move(answer.body);
    CompareLinks();
}

// Once both are known: does the service's own link agree with where the inventory was read?
void FirmwareSurvey::CompareLinks() {
    if (!inventory_ended_ || !service_ended_ || compared_) return;
    compared_ = true;
    const std::string linked = InventoryLink(context_.snapshot.update_service, "FirmwareInventory");
    if (!linked.empty() && !IsSameLink(linked, path_)) {
        context_.snapshot.firmware.clear();
        Forget(kFirmwareSource);
        inventory_ended_ = false;
        ReadInventory(linked);
        return;
    }
    if (context_.snapshot.firmware.empty()) ReadSoftwareInventory();
    if (service_is_broken_ && IsLasting(failure_)) failure_.problem = RedfishProblem::kNotFound;
    if (failure_.problem != RedfishProblem::kNotFound) return;
    // Nothing is missing where nothing is offered: other resources complete the list.
    StatusOf(kFirmwareSource).state = VantixConnection::SourceState::kUnsupported;
    StatusOf(kFirmwareSource).required = false;
    StatusOf(kFirmwareSource).detail =
        "the service offers no firmware inventory (" + failure_.text + ")";
    Report(kFirmwareSource);
}

void FirmwareSurvey::ReadSoftwareInventory() {
    const std::string linked = InventoryLink(context_.snapshot.update_service, "SoftwareInventory");
    if (linked.empty()) return;
    CollectionOptions options;
    options.get.is_slow = true;
    options.required_fields = {"Id", "Name", "Version"};
    ReadAll(kSoftwareSource, linked, std::move(options), context_.snapshot.software, nullptr);
}

void FirmwareSurvey::ReadAgain() {
    former_ = std::exchange(context_.snapshot.firmware, {});
    former_status_ = StatusOf(kFirmwareSource);
    has_former_ = true;
    Forget(kFirmwareSource);
    ReadInventory(path_);
}

void FirmwareSurvey::RestoreFormer() {
    context_.snapshot.firmware = std::exchange(former_, {});
    StatusOf(kFirmwareSource) = former_status_;
    Report(kFirmwareSource);
}

int FirmwareSurvey::MemberCount() {
    const Status& status = StatusOf(kFirmwareSource);
    return status.items_read + status.items_failed;
}

}  // namespace Vantix::redfish
