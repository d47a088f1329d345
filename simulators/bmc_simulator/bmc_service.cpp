#include "bmc_simulator/bmc_service.h"

#include <boost/json.hpp>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>

#include "bmc_simulator/cim_responder.h"
#include "bmc_simulator/collection_view.h"

namespace simulators {
namespace {

namespace json = boost::json;

constexpr std::string_view kRoot = "/redfish/v1";
constexpr std::string_view kCimPath = "/cimom";
constexpr std::string_view kWebServicePath = "/sdk";
constexpr std::string_view kStandardSessions = "/redfish/v1/SessionService/Sessions";

/// The path of a raw target as the tree spells its keys.
std::string PathOf(std::string_view target) {
    std::string path = Unquote(target.substr(0, target.find('?')));
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

/// Unquoted value of a query parameter, nothing where it is not there.
std::optional<std::string> QueryValue(std::string_view target, std::string_view name) {
    const std::size_t question = target.find('?');
    if (question == std::string_view::npos) return std::nullopt;
    std::string query = "&" + Unquote(target.substr(question + 1)) + "&";
    const std::string start = "&" + std::string(name) + "=";
    const std::size_t found = query.find(start);
    if (found == std::string::npos) return std::nullopt;
    const std::size_t from = found + start.size();
    return query.substr(from, query.find('&', from) - from);
}

/// Text at nested member names; empty where the way there is broken.
std::string TextAt(const std::string& body, std::initializer_list<std::string_view> names) {
    boost::system::error_code error;
    const json::value value = json::parse(body, error);
    const json::value* place = error ? nullptr : &value;
    for (const std::string_view name : names) {
        const json::object* object = place ? place->if_object() : nullptr;
        place = object ? object->if_contains(name) : nullptr;
    }
    return place && place->is_string() ? std::string(std::string_view(place->get_string()))
                                       : std::string();
}

/// Empty where there is no such file.
std::string ReadFile(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

ServiceReply Ok(std::string body) {
    ServiceReply reply;
    reply.headers.emplace_back("OData-Version", "4.0");
    reply.body = std::move(body);
    return reply;
}

}  // namespace

BmcService::BmcService(const BmcOptions& options, BmcCounts& counts)
    : options_(options),
      recorded_(ScenarioTree::Load(options.scenario_dir)),
      desk_(options, counts),
      cim_(CimRepository::Load(options.scenario_dir)),
      web_service_(ReadFile(options.scenario_dir + "/sdk.xml")) {
    ReloadReplacedBodies();
}

void BmcService::ReloadReplacedBodies() {
    tree_ = recorded_;
    for (const auto& [path, body] : options_.replaced_bodies) tree_.Replace(path, body);
}

std::string BmcService::SessionsPath() const {
    const ScenarioTree::Resource* root = tree_.Find(kRoot);
    if (!root) return std::string(kStandardSessions);
    std::string path = TextAt(root->body, {"Links", "Sessions", "@odata.id"});
    if (path.empty()) {
        const std::string service = TextAt(root->body, {"SessionService", "@odata.id"});
        const ScenarioTree::Resource* found = service.empty() ? nullptr : tree_.Find(service);
        if (found) path = TextAt(found->body, {"Sessions", "@odata.id"});
    }
    return path.starts_with('/') ? PathOf(path) : std::string(kStandardSessions);
}

std::optional<ServiceReply> BmcService::AnswerOthers(const ServiceRequest& request,
                                                     const std::string& path) {
    if (request.method != "POST") return std::nullopt;
    if (path == kWebServicePath && !web_service_.empty()) {
        return ServiceReply{200, {}, "text/xml; charset=utf-8", web_service_};
    }
    if (path != kCimPath || cim_.IsEmpty()) return std::nullopt;
    if (auto refusal = desk_.TurnAway(request)) return refusal;
    return AnswerCim(cim_, request);
}

ServiceReply BmcService::Answer(const ServiceRequest& request) {
    const std::string path = PathOf(request.target);
    if (auto reply = AnswerOthers(request, path)) return *reply;
    const bool is_root = path == kRoot || path == "/redfish";
    const std::string sessions_path = SessionsPath();
    if (request.method == "POST" && path == sessions_path) {
        return desk_.Open(request, sessions_path);
    }
    if (!is_root || options_.root_needs_login) {
        if (auto refusal = desk_.TurnAway(request)) return *refusal;
    }
    if (path == sessions_path || path.starts_with(sessions_path + "/")) {
        return AnswerSessions(request, sessions_path, path);
    }
    if (request.method != "GET" && request.method != "HEAD") {
        return ErrorReply(405, "Base.1.12.OperationNotAllowed");
    }
    return Get(request, path);
}

ServiceReply BmcService::AnswerSessions(const ServiceRequest& request,
                                        std::string_view sessions_path, const std::string& path) {
    const bool is_collection = path.size() == sessions_path.size();
    const std::string id = is_collection ? std::string() : path.substr(sessions_path.size() + 1);
    if (request.method == "DELETE" && !is_collection) return desk_.Close(id);
    if (request.method != "GET") return ErrorReply(405, "Base.1.12.OperationNotAllowed");
    return is_collection ? desk_.List(sessions_path) : desk_.Show(sessions_path, id);
}

bool BmcService::ExpandOffered() const {
    if (options_.expand == ExpandMode::kUnsupported) return false;
    if (options_.expand != ExpandMode::kAsRecorded) return true;
    const ScenarioTree::Resource* root = tree_.Find(kRoot);
    return root && OffersExpand(root->body);
}

ServiceReply BmcService::Get(const ServiceRequest& request, const std::string& path) const {
    if (path == "/redfish") return Ok("{\"v1\":\"/redfish/v1/\"}");
    const std::size_t question = request.target.find('?');
    if (options_.refuse_encoded_dollar && question != std::string::npos &&
        request.target.find("%24", question) != std::string::npos) {
        return ErrorReply(400, "Base.1.12.QueryParameterValueFormatError");
    }
    const ScenarioTree::Resource* resource = tree_.Find(request.target);
    if (!resource || (resource->status == 404)) {
        return ErrorReply(404, "Base.1.12.ResourceMissingAtURI", "Nothing at " + path + ".");
    }
    if (resource->status != 200) {
        ServiceReply reply = Ok(resource->body);
        reply.status = resource->status;
        return reply;
    }
    if (path == kRoot && options_.expand != ExpandMode::kAsRecorded) {
        return Ok(WithExpandOffer(resource->body, ExpandOffered()));
    }
    if (QueryValue(request.target, "$expand")) return GetExpanded(*resource, request, path);
    return View(*resource, request, path, false);
}

ServiceReply BmcService::GetExpanded(const ScenarioTree::Resource& resource,
                                     const ServiceRequest& request, const std::string& path) const {
    if (!ExpandOffered()) return ErrorReply(501, "Base.1.12.QueryNotSupported");
    if (options_.expand == ExpandMode::kRefused) {
        return ErrorReply(options_.expand_refusal_status, "Base.1.12.QueryNotSupportedOnResource");
    }
    ServiceReply reply = View(resource, request, path, options_.expand != ExpandMode::kIgnored);
    if (options_.expand == ExpandMode::kTwoDocuments) {
        reply.body.insert(0, ErrorReply(403, "Base.1.12.LicenseRequired").body + "\n");
    }
    return reply;
}

ServiceReply BmcService::View(const ScenarioTree::Resource& resource, const ServiceRequest& request,
                              const std::string& path, bool expand) const {
    const std::string skip_text = QueryValue(request.target, "$skip").value_or("");
    CollectionQuery query;
    query.expand = expand;
    query.page_size = static_cast<std::size_t>(options_.page_size > 0 ? options_.page_size : 0);
    std::from_chars(skip_text.data(), skip_text.data() + skip_text.size(), query.skip);
    if (options_.expand == ExpandMode::kDropsFields) {
        query.dropped_fields = options_.expand_dropped_fields;
    }
    // Untouched bodies go out byte for byte, so that a recording is served as it was.
    if (!expand && query.page_size == 0 && query.skip == 0) return Ok(resource.body);
    // A recorded page (folder X?$skip=75) has been skipped to already.
    if (tree_.Find(path) != &resource) query.skip = 0;
    auto view = ViewCollection(resource.body, path, query,
                               [this](std::string_view link) { return MemberBody(link); });
    return Ok(view ? std::move(*view) : resource.body);
}

std::string BmcService::MemberBody(std::string_view link) const {
    const ScenarioTree::Resource* member = tree_.Find(link);
    return member && member->status == 200 ? member->body : std::string();
}

}  // namespace simulators
