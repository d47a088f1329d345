#include "bmc_simulator/collection_view.h"

#include <algorithm>
#include <boost/json.hpp>

namespace simulators {
namespace {

namespace json = boost::json;

json::value ParseOrNull(const std::string& text) {
    boost::system::error_code error;
    json::parse_options options;
    options.max_depth = 64;
    json::value value = json::parse(text, error, {}, options);
    return error ? json::value() : value;
}

std::string_view LinkOf(const json::value& member) {
    const json::object* object = member.if_object();
    const json::value* id = object ? object->if_contains("@odata.id") : nullptr;
    return id && id->is_string() ? std::string_view(id->get_string()) : std::string_view();
}

json::value ExpandMember(const json::value& link, const CollectionQuery& query,
                         const MemberReader& read_member) {
    const std::string_view target = LinkOf(link);
    json::value body = target.empty() ? json::value() : ParseOrNull(read_member(target));
    if (!body.is_object()) return link;
    for (const std::string& field : query.dropped_fields) body.get_object().erase(field);
    return body;
}

std::string NextLink(std::string_view path, std::size_t skip, bool expand) {
    const std::string start = std::string(path) + (expand ? "?$expand=.($levels=1)&" : "?");
    return start + "$skip=" + std::to_string(skip);
}

}  // namespace

std::optional<std::string> ViewCollection(const std::string& body, std::string_view path,
                                          const CollectionQuery& query,
                                          const MemberReader& read_member) {
    json::value value = ParseOrNull(body);
    json::object* collection = value.if_object();
    json::value* members = collection ? collection->if_contains("Members") : nullptr;
    if (!members || !members->is_array()) return std::nullopt;

    const json::array all = std::move(members->get_array());
    const std::size_t first = std::min(query.skip, all.size());
    const std::size_t room = query.page_size == 0 ? all.size() : query.page_size;
    const std::size_t last = first + std::min(room, all.size() - first);
    json::array page;
    for (std::size_t i = first; i < last; ++i) {
        page.push_back(query.expand ? ExpandMember(all[i], query, read_member) : all[i]);
    }
    *members = std::move(page);
    if (last < all.size()) {
        (*collection)["Members@odata.count"] = all.size();
        (*collection)["Members@odata.nextLink"] = NextLink(path, last, query.expand);
    }
    return json::serialize(value);
}

std::string WithExpandOffer(const std::string& body, bool offered) {
    json::value value = ParseOrNull(body);
    json::object* root = value.if_object();
    if (!root) return body;
    json::value& features = (*root)["ProtocolFeaturesSupported"];
    if (!features.is_object()) features = json::object();
    json::object offer{
        {"ExpandAll", offered}, {"Levels", offered}, {"Links", offered}, {"NoLinks", offered}};
    if (offered) offer["MaxLevels"] = 1;
    features.get_object()["ExpandQuery"] = std::move(offer);
    return json::serialize(value);
}

bool OffersExpand(const std::string& body) {
    const json::value value = ParseOrNull(body);
    const json::object* root = value.if_object();
    const json::value* features = root ? root->if_contains("ProtocolFeaturesSupported") : nullptr;
    const json::object* list = features ? features->if_object() : nullptr;
    const json::value* query = list ? list->if_contains("ExpandQuery") : nullptr;
    const json::object* offer = query ? query->if_object() : nullptr;
    if (!offer) return false;
    return std::ranges::any_of(std::initializer_list<std::string_view>{"ExpandAll", "NoLinks"},
                               [&](std::string_view key) {
                                   const json::value* flag = offer->if_contains(key);
                                   return flag && flag->is_bool() && flag->get_bool();
                               });
}

}  // namespace simulators
