#include "platform/redfish/facts_survey.h"

#include <utility>

#include "transport/redfish/json_fields.h"
#include "transport/redfish/odata_link.h"

namespace Vantix::redfish {

namespace {

// A root may forget a link although the resource exists.
std::string PathOf(const boost::json::object& root, const char* name) {
    const std::string linked = transport::LinkPath(transport::json::Link(root, name));
    return linked.empty() ? std::string("/redfish/v1/") + name : linked;
}

}  // namespace

void FactsSurvey::Start(std::function<void()> on_done) {
    Started();
    on_done_ = std::move(on_done);
    transport::CollectionOptions options;
    options.required_fields = {"Id"};
    ReadAll("computer systems", PathOf(context_.snapshot.root, "Systems"), options,
            context_.snapshot.systems, [this](const transport::RedfishFailure& failure) {
                systems_ = failure;
                Ended();
            });
    ReadAll("managers", PathOf(context_.snapshot.root, "Managers"), options,
            context_.snapshot.managers, [this](const transport::RedfishFailure& failure) {
                managers_ = failure;
                Ended();
            });
}

void FactsSurvey::Ended() {
    if (--to_come_ == 0 && on_done_) on_done_();
}

}  // namespace Vantix::redfish
