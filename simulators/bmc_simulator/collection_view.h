// What the query parameters $expand and $skip make of a collection. Pure: JSON text in, JSON text
// out. Only collections are expanded, one level deep; other resources are served as they stand.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulators {

struct CollectionQuery {
    bool expand = false;
    std::size_t skip = 0;
    std::size_t page_size = 0;                ///< 0: all
    std::vector<std::string> dropped_fields;  ///< left out of expanded members
};

/// Body of a member by its link; empty where it cannot be read (then the link stays).
using MemberReader = std::function<std::string(std::string_view link)>;

/// The view of the collection `body` that is served at `path`; nothing where `body` is no
/// collection. With paging `Members@odata.count` is the total, the next link is appended.
[[nodiscard]] std::optional<std::string> ViewCollection(const std::string& body,
                                                        std::string_view path,
                                                        const CollectionQuery& query,
                                                        const MemberReader& read_member);

/// The service root `body` with its $expand offer set to `offered`.
[[nodiscard]] std::string WithExpandOffer(const std::string& body, bool offered);

/// Whether the service root `body` offers $expand of members.
[[nodiscard]] bool OffersExpand(const std::string& body);

}  // namespace simulators
