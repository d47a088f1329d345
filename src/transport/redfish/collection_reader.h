// Reads a whole Redfish collection: inline members where the service offers them, page by page,
// and singly whatever came incomplete. One bad member costs only itself.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "transport/redfish/redfish_service.h"

namespace Vantix::transport {

struct CollectionMember {
    std::string path;
    boost::json::object body;
};

/// What a collection gave. `failure` concerns the collection itself; `issues` name what was left
/// out or looked odd ("/redfish/v1/...: 404 ...").
struct CollectionAnswer {
    RedfishFailure failure;
    std::vector<CollectionMember> members;  ///< in the order of first sight
    std::vector<std::string> issues;
    int failed_members = 0;
    int merged_duplicates = 0;
    bool ran_out_of_time = false;  ///< members failed because the target's whole time is used up
};

struct CollectionOptions {
    GetOptions get;
    /// How deep members may be asked for inline; 2 also brings what the members link to.
    int expand_levels = 1;
    /// An inline member without one of these is read again singly.
    std::vector<std::string> required_fields{"Id", "Name"};
    /// Called as members come in: how many of how many.
    std::function<void(std::size_t, std::size_t)> on_progress;
    /// Members are read only when this holds; empty: all.
    std::function<bool(const std::string& path)> wants_member;
};

/// Starts reading the collection at `path`; `done` is called once, from within Step(). `service`
/// must outlive the reading.
void ReadCollection(RedfishService& service, const std::string& path, CollectionOptions options,
                    std::function<void(CollectionAnswer&&)> done);

/// The same for members whose paths are known from links.
void ReadMembers(RedfishService& service, const std::vector<std::string>& paths,
                 CollectionOptions options, std::function<void(CollectionAnswer&&)> done);

}  // namespace Vantix::transport
